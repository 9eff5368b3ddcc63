#include "SpaceScan/RecordSort.h"

#include <algorithm>
#include <array>
#include <numeric>
#include <utility>

namespace {

constexpr unsigned digitBits = 11;
constexpr std::size_t digitValues = std::size_t{1} << digitBits;

/// A record's place in line, without the record: moved instead of it.
struct Key {
    std::uint32_t size;  ///< In units that all sizes are multiples of.
    std::uint32_t index;
};

std::size_t digit(std::uint32_t size, unsigned shift) {
    return (size >> shift) & (digitValues - 1);
}

/// One stable pass by one digit, high values first.
void pass(const std::vector<Key>& from, std::vector<Key>& to, unsigned shift) {
    std::array<std::size_t, digitValues> next{};
    for (const Key& key : from) {
        ++next.at(digit(key.size, shift));
    }
    std::size_t begin = 0;
    for (auto count = next.rbegin(); count != next.rend(); ++count) {
        begin += std::exchange(*count, begin);
    }
    for (const Key& key : from) {
        to[next.at(digit(key.size, shift))++] = key;
    }
}

/// `unit` is the number of low bits that no size has set.
std::vector<std::uint32_t> sortedByDigits(const std::vector<FileRecord>& records, unsigned unit, std::uint32_t bits) {
    std::vector<Key> keys;
    keys.reserve(records.size());
    for (const FileRecord& record : records) {
        keys.push_back({static_cast<std::uint32_t>(record.size >> unit), static_cast<std::uint32_t>(keys.size())});
    }
    std::vector<Key> other(keys.size());
    for (unsigned shift = 0; shift < 32 && (bits >> shift) != 0; shift += digitBits) {
        pass(keys, other, shift);
        keys.swap(other);
    }
    other = {};
    std::vector<std::uint32_t> order(keys.size());
    std::transform(keys.begin(), keys.end(), order.begin(), [](const Key& key) { return key.index; });
    return order;
}

std::vector<std::uint32_t> sortedByComparing(const std::vector<FileRecord>& records) {
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
    // Sizes are multiples of a block nearly always, so that those up to 2 TiB and more fit 32 bits.
    const auto unit = static_cast<unsigned>(bits == 0 ? 0 : __builtin_ctzll(bits));
    const bool fits = (bits >> unit) >> 32 == 0;
    std::vector<std::uint32_t> order =
        fits ? sortedByDigits(records, unit, static_cast<std::uint32_t>(bits >> unit)) : sortedByComparing(records);
    std::vector<FileRecord> sorted;
    sorted.reserve(records.size());
    std::transform(order.begin(), order.end(), std::back_inserter(sorted),
                   [&](std::uint32_t index) { return records[index]; });
    records.swap(sorted);
    return order;
}
