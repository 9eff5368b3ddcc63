#pragma once

#include "SpaceScan/FileList.h"

#include <vector>

/// Sorts by size, largest first; records of equal size keep their order. Linear time.
void sortBySizeDescending(std::vector<FileRecord>& records);
