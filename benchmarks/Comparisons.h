#pragma once

#include <cstdint>
#include <string>

/// Each function prints a table and records its budgets. `tree` is a folder, `files` the number of entries it was made
/// with.

/// Scans compared with bare walks and other programs that add up file sizes; with a warm cache, or a cold one if caches
/// can be dropped.
void compareScans(const std::string& tree, std::int64_t files, bool cold);

/// The kinds of files on the home screen, with the tree as one of the measured folders, compared with `du`.
void compareSizes(const std::string& tree);

/// Scanning for junk with the tree as cache folder, and as its only entry, compared with `du`.
void compareJunk(const std::string& tree);

/// A chain of folders, each in the one before, made in the folder `base`.
void compareChains(const std::string& base);

/// The memory that remains in use after a scan.
void compareMemory(const std::string& tree);

/// One keystroke in the search field, for texts found often, rarely and never; a category chosen; a file removed.
void compareSearches(const std::string& tree);

/// What the program has in place of parts of the standard library, compared with these on the names and sizes of a
/// scan.
void compareParts(const std::string& tree);

/// The window: time to the first frame and memory compared with an empty window, the longest time without the event
/// loop of the main thread while the tree is scanned, searched and measured, the scan in the window compared with the
/// scan alone, and the load of a progress bar. `programs` is the folder of the two programs that show a window.
void compareWindows(const std::string& programs, const std::string& tree);
