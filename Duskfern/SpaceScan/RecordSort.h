#pragma once

#include <cstdint>
#include <vector>

/// What a file is sorted by.
struct SortKey {
    std::uint32_t size;    ///< In units of which all sizes are multiples.
    std::uint32_t number;  ///< Of the file; not compared.
};

/// Sorts by size, largest first, stably and in linear time. `bits` has the bits set that are set in any size.
void sortBySizeDescending(std::vector<SortKey>& keys, std::uint32_t bits);
