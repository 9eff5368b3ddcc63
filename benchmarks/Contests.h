#pragma once

#include <cstdint>
#include <string>

/// Each prints its table and notes its budgets. `tree` is a folder, `files` the number of entries it was made of.

/// The scan beside bare walks and other programs that add up what files take; warm, or cold where caches can be
/// dropped.
void compareScans(const std::string& tree, std::int64_t files, bool cold);

/// Measuring one folder on one thread, beside `du`.
void compareSizes(const std::string& tree);

/// Looking for junk in a cache that holds the tree, beside `du`.
void compareJunk(const std::string& tree);

/// What is left of a scan in memory once it is over.
void compareMemory(const std::string& tree);

/// One keystroke in the search field, for texts found often, seldom and never.
void compareSearches(const std::string& tree);

/// The sort beside that of the standard library, on sizes in no order.
void compareSorts(const std::string& tree);

/// The window: from the start to the first frame beside an empty window, and how long the interface thread is away
/// while the tree is scanned and searched. `programs` is the folder of the two programs that show a window.
void compareWindows(const std::string& programs, const std::string& tree);
