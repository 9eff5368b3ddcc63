#include "SpaceScan/RecordSort.h"

#include <algorithm>
#include <array>
#include <numeric>
#include <utility>

namespace {

constexpr unsigned digitBits = 11;
constexpr std::size_t digitValues = std::size_t{1} << digitBits;

/// A record's sort key. The passes move these instead of the records.
struct SortKey {
    std::uint32_t size;  ///< In units of which all sizes are multiples.
    std::uint32_t index;
};

std::size_t digit(std::uint32_t size, unsigned shift) {
    return (size >> shift) & (digitValues - 1);
}

/// One stable pass of a radix sort, descending, by the digit at `shift`.
void sortPass(const std::vector<SortKey>& from, std::vector<SortKey>& to, unsigned shift) {
    std::array<std::size_t, digitValues> next{};
    for (const SortKey& key : from) {
        ++next.at(digit(key.size, shift));
    }
    std::size_t begin = 0;
    for (auto count = next.rbegin(); count != next.rend(); ++count) {
        begin += std::exchange(*count, begin);
    }
    for (const SortKey& key : from) {
        to[next.at(digit(key.size, shift))++] = key;
    }
}

/// Radix sort. All sizes are multiples of 2^`unit`; `bits` has the bits set that are set in any size divided by that.
std::vector<std::uint32_t> radixSorted(const std::vector<FileRecord>& records, unsigned unit, std::uint32_t bits) {
    std::vector<SortKey> keys;
    keys.reserve(records.size());
    for (const FileRecord& record : records) {
        keys.push_back({static_cast<std::uint32_t>(record.size >> unit), static_cast<std::uint32_t>(keys.size())});
    }
    std::vector<SortKey> other(keys.size());
    for (unsigned shift = 0; shift < 32 && (bits >> shift) != 0; shift += digitBits) {
        sortPass(keys, other, shift);
        keys.swap(other);
    }
    other = {};
    std::vector<std::uint32_t> order(keys.size());
    std::transform(keys.begin(), keys.end(), order.begin(), [](const SortKey& key) { return key.index; });
    return order;
}

std::vector<std::uint32_t> comparisonSorted(const std::vector<FileRecord>& records) {
    std::vector<std::uint32_t> order(records.size());
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(),
                     [&](std::uint32_t a, std::uint32_t b) { return records[a].size > records[b].size; });
    return order;
}

}  // namespace

std::vector<std::uint32_t> sortBySizeDescending(std::vector<FileRecord>& records) {
    std::uint64_t bits = 0;
    for (const FileRecord& record : records) {
        bits |= record.size;
    }
    // Sizes are nearly always multiples of a block, so that in units of that 32 bits are enough for 2 TiB and more.
    const auto unit = static_cast<unsigned>(bits == 0 ? 0 : __builtin_ctzll(bits));
    const bool fits = (bits >> unit) >> 32 == 0;
    std::vector<std::uint32_t> order =
        fits ? radixSorted(records, unit, static_cast<std::uint32_t>(bits >> unit)) : comparisonSorted(records);
    std::vector<FileRecord> sorted;
    sorted.reserve(records.size());
    std::transform(order.begin(), order.end(), std::back_inserter(sorted),
                   [&](std::uint32_t index) { return records[index]; });
    records.swap(sorted);
    return order;
}
