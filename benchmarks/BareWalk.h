#pragma once

#include <cstdint>
#include <string>

/// The least work for any program: reads every name and the blocks of every file below `root`, hidden ones included, on
/// that many threads, and stores nothing. Returns the sum of the blocks in bytes.
std::int64_t bareWalk(const std::string& root, unsigned threads);
