#include "SpaceScan/RecordSort.h"

#include <array>
#include <utility>

namespace {

constexpr unsigned digitBits = 11;
constexpr std::size_t digitValues = std::size_t{1} << digitBits;

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

}  // namespace

void sortBySizeDescending(std::vector<SortKey>& keys, std::uint32_t bits) {
    std::vector<SortKey> other(keys.size());
    for (unsigned shift = 0; shift < 32 && (bits >> shift) != 0; shift += digitBits) {
        sortPass(keys, other, shift);
        keys.swap(other);
    }
}
