#pragma once

#include <cstdint>
#include <string>

/// Makes a folder tree like that of a large home: about 12 files per folder, a mean depth of 8.6, a few folders of
/// 20,000 entries, names of 5 to 40 bytes with accents, hidden entries, links and packages. The same `files` and `seed`
/// give the same tree. Does nothing if the tree exists. Ends the program on failure.
void makeReferenceTree(const std::string& root, std::int64_t files, std::uint64_t seed);

/// Makes a chain of `depth` folders, each in the one before, with a file in the last. Does nothing if it exists. Ends
/// the program on failure.
void makeChain(const std::string& root, int depth);
