#pragma once

#include "SpaceScan/FileList.h"

#include <cstdint>
#include <vector>

/// Sorts by size, largest first; records of equal size keep their order. Linear time. Returns for each place the one
/// where its record stood before.
std::vector<std::uint32_t> sortBySizeDescending(std::vector<FileRecord>& records);
