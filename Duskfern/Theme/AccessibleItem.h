#pragma once

/// Lets assistive technology see which controls are disabled: Qt Quick 6.4.2 does not say so of any item. To be called
/// once, before the first window.
void installAccessibleItems();
