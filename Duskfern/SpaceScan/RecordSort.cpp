#include "SpaceScan/RecordSort.h"

#include <algorithm>
#include <array>

namespace {

constexpr unsigned digitBits = 11;
constexpr std::size_t digitValues = std::size_t{1} << digitBits;

/// A record's place in line, without the record: moved instead of it.
struct Key {
    std::uint64_t size;
    std::uint32_t index;
};

std::size_t digit(std::uint64_t size, unsigned shift) {
    return (size >> shift) & (digitValues - 1);
}

/// One stable pass by one digit, high values first.
void pass(const std::vector<Key>& from, std::vector<Key>& to, unsigned shift) {
    std::array<std::size_t, digitValues> next{};
    for (const Key& key : from) {
        ++next[digit(key.size, shift)];
    }
    std::size_t begin = 0;
    for (auto count = next.rbegin(); count != next.rend(); ++count) {
        begin += std::exchange(*count, begin);
    }
    for (const Key& key : from) {
        to[next[digit(key.size, shift)]++] = key;
    }
}

}  // namespace

void sortBySizeDescending(std::vector<FileRecord>& records) {
    std::uint64_t largest = 0;
    std::vector<Key> keys(records.size());
    for (std::size_t i = 0; i < records.size(); ++i) {
        keys[i] = {records[i].size, static_cast<std::uint32_t>(i)};
        largest |= records[i].size;
    }
    // Sizes are multiples of a block nearly always: digits in which no size has a bit set need no pass.
    std::uint64_t differing = largest;
    const auto low = static_cast<unsigned>(largest == 0 ? 0 : __builtin_ctzll(largest));
    differing >>= low;
    std::vector<Key> other(keys.size());
    for (unsigned shift = low; differing != 0; shift += digitBits, differing >>= digitBits) {
        pass(keys, other, shift);
        keys.swap(other);
    }
    other = {};
    std::vector<FileRecord> sorted(records.size());
    std::transform(keys.begin(), keys.end(), sorted.begin(), [&](const Key& key) { return records[key.index]; });
    records.swap(sorted);
}
