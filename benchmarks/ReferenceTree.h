#pragma once

#include <cstdint>
#include <string>

/// Makes a folder tree like a large home: about 12 files a folder, a mean depth of 8.6, a few folders of 20,000
/// entries, names of 5 to 40 bytes with accents, hidden entries, links and packages. The same `files` and seed give
/// the same tree. Does nothing if a tree made by it is there already. Ends the program if it cannot.
void makeReferenceTree(const std::string& root, std::int64_t files, std::uint64_t seed);
