#pragma once

#include <cstdint>
#include <string>

/// What any program has to do at the least: reads every name and every file's blocks below `root` on that many
/// threads, hidden ones included, and keeps nothing. Returns the sum of the blocks in bytes.
std::int64_t bareWalk(const std::string& root, unsigned threads);
