#pragma once

/// Reports disabled controls to assistive technologies: Qt Quick 6.4.2 reports no item as disabled. Must be called
/// once, before the first window is created.
void installAccessibleItems();
