#pragma once

#include "SpaceScan/FileList.h"

#include <cstdint>
#include <vector>

/// Sorts by size, largest first, stably and in linear time. Returns for each new index the index that the record had
/// before.
std::vector<std::uint32_t> sortBySizeDescending(std::vector<FileRecord>& records);
