#pragma once

/// Tells assistive technologies what Qt Quick 6.4.2 does not: which controls are disabled and which dialogs modal; the
/// rows of a list in the order in which they are seen, each with its position; and the row that the keyboard acts on.
/// Must be called once, before the first window is created.
void installAccessibleItems();
