#include "SpaceScan/NumberedNames.h"

#include "SpaceScan/ByteMask.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <numeric>

namespace {

using ByteMask::stepSize;

/// The steps of a search that are taken together.
constexpr std::size_t stepsAtOnce = 4;
constexpr std::size_t groupSize = stepsAtOnce * stepSize;
static_assert(NumberedNames::longestText + groupSize + stepSize < StringArena::padding);

/// A byte of a text, which a search compares with 64 bytes of names at a time.
struct Probe {
    std::size_t offset = 0;
    ByteMask::Wanted byte;
};

/// The bytes that are compared first, the rarest first. The last is repeated where the text is shorter.
using Probes = std::array<Probe, 8>;

constexpr bool isSmallLetter(char byte) {
    return byte >= 'a' && byte <= 'z';
}

constexpr char inLowerCase(char byte) {
    return static_cast<char>(byte >= 'A' && byte <= 'Z' ? byte + ('a' - 'A') : byte);
}

/// Whether `name` begins with `text`, which is in lower case.
bool beginsWith(const char* name, std::string_view text) {
    return std::equal(text.begin(), text.end(), name,
                      [](char wanted, char byte) { return wanted == inLowerCase(byte); });
}

ByteMask::Wanted wanted(char byte) {
    // Capital letters differ from small ones in one bit.
    return {byte, isSmallLetter(byte) ? char{'a' - 'A'} : '\0'};
}

/// The rarest bytes give the fewest candidates. Their frequency is estimated from a sample.
Probes rarestBytes(std::string_view text, const StringArena::Block& block) {
    std::array<std::uint32_t, 256> counts{};
    for (const char byte : std::string_view(block.data, std::min<std::size_t>(block.size, 4096))) {
        ++counts.at(static_cast<unsigned char>(inLowerCase(byte)));
    }
    std::vector<std::size_t> offsets(text.size());
    std::iota(offsets.begin(), offsets.end(), std::size_t{0});
    Probes probes{};
    const std::size_t count = std::min(text.size(), probes.size());
    std::partial_sort(offsets.begin(), offsets.begin() + static_cast<std::ptrdiff_t>(count), offsets.end(),
                      [&](std::size_t a, std::size_t b) {
                          return counts.at(static_cast<unsigned char>(text[a])) <
                                 counts.at(static_cast<unsigned char>(text[b]));
                      });
    for (std::size_t probe = 0; probe < probes.size(); ++probe) {
        const std::size_t offset = offsets[std::min(probe, count - 1)];
        probes.at(probe) = {offset, wanted(text[offset])};
    }
    return probes;
}

/// Those of `places` that are not in the same name as `place`, a bit, and not before it. `ends` are the NULs.
std::uint64_t behindName(std::uint64_t places, std::uint64_t place, std::uint64_t ends) {
    ends &= ~(place - 1);
    return ends == 0 ? 0 : places & ~std::uint64_t{0} << static_cast<unsigned>(std::countr_zero(ends));
}

/// Those of the places after `data` where `text` is, the first in each name: names of one letter only would be compared
/// at each of them.
std::uint64_t confirmed(std::uint64_t places, std::uint64_t ends, const char* data, std::string_view text) {
    std::uint64_t found = 0;
    while (places != 0) {
        const std::uint64_t place = places & (~places + 1);
        if (!beginsWith(data + std::countr_zero(place), text)) {
            places ^= place;
            continue;
        }
        found |= place;
        places = behindName(places, place, ends);
    }
    return found;
}

void reserveOneMore(std::vector<std::uint32_t>& numbers) {
    if (numbers.size() == numbers.capacity()) {
        numbers.reserve(std::max<std::size_t>(64, 2 * numbers.size()));
    }
}

}  // namespace

void NumberedNames::append(std::string_view name) {
    // All allocations come first: names are found by counting those in the arena, so a failure must not leave one there
    // that `m_size` does not count.
    reserveOneMore(m_positions);
    reserveOneMore(m_firsts);
    const std::size_t blocks = m_names.blockCount();
    const std::uint32_t position = m_names.append(name);
    if (m_names.blockCount() != blocks) {
        m_firsts.push_back(m_size);
    }
    if (m_size % stride == 0) {
        m_positions.push_back(position);
    }
    ++m_size;
}

/// Tells the number of the name at an offset, for ascending offsets, by counting the NULs before it.
template <class Mask>
class NumberedNames::Cursor {
public:
    Cursor(const NumberedNames& names, std::size_t block)
        : m_names(names),
          m_data(names.m_names.block(block).data),
          m_blockPosition(StringArena::position(block, 0)),
          m_number(names.m_firsts[block]) {}

    /// Moves to the 64 bytes at `offset` of the block.
    void moveTo(std::size_t offset) {
        if (offset > m_offset + seekDistance) {
            seek(offset);
        }
        for (; m_offset + stepSize <= offset; m_offset += stepSize) {
            m_number += Mask::count(m_ends);
            m_ends = endsAt(m_offset + stepSize);
        }
        if (m_offset < offset) {
            m_number += Mask::count(m_ends & below(offset - m_offset));
            m_offset = offset;
            m_ends = endsAt(offset);
        }
    }

    /// The NULs in the 64 bytes.
    [[nodiscard]] std::uint64_t ends() const { return m_ends; }

    /// The number of the name that contains the first of the 64 bytes.
    [[nodiscard]] std::uint32_t number() const { return m_number; }

private:
    /// Beyond this many bytes, looking up a recorded position is quicker than counting.
    static constexpr std::size_t seekDistance = 1024;

    static std::uint64_t below(std::size_t place) { return (std::uint64_t{1} << place) - 1; }

    [[nodiscard]] std::uint64_t endsAt(std::size_t offset) const { return Mask::ofNul(m_data + offset); }

    /// Moves to the last recorded name that begins at or before `offset`, if that is ahead.
    void seek(std::size_t offset) {
        const auto from = m_names.m_positions.begin() + m_number / stride;
        const auto position = m_blockPosition + static_cast<std::uint32_t>(offset);
        const auto mark = std::upper_bound(from, m_names.m_positions.end(), position) - 1;
        const auto number = static_cast<std::uint32_t>(mark - m_names.m_positions.begin()) * stride;
        if (number > m_number) {
            m_number = number;
            m_offset = *mark - m_blockPosition;
            m_ends = endsAt(m_offset);
        }
    }

    const NumberedNames& m_names;
    const char* m_data;
    std::uint32_t m_blockPosition;
    std::uint32_t m_number;    ///< Number of the name at the offset.
    std::size_t m_offset = 0;  ///< Begin of the current 64 bytes.
    std::uint64_t m_ends = endsAt(0);
};

std::string_view NumberedNames::at(std::uint32_t number) const {
    const std::uint32_t position = m_positions[number / stride];
    std::size_t block = StringArena::blockOf(position);
    const char* name = m_names.at(position);
    std::uint32_t at = number / stride * stride;
    while (block + 1 < m_firsts.size() && m_firsts[block + 1] <= number) {
        at = m_firsts[++block];
        name = m_names.block(block).data;
    }
    for (; at < number; ++at) {
        name += std::strlen(name) + 1;
    }
    return name;
}

template <class Mask>
void NumberedNames::searchBy(std::size_t block, std::string_view text, std::uint32_t base, BitSet& found) const {
    const auto [data, size] = m_names.block(block);
    const Probes probes = rarestBytes(text, {data, size});
    const auto placesOfPair = [&probes, data = data](std::size_t probe, std::size_t step) {
        const Probe& first = probes[probe];
        const Probe& second = probes[probe + 1];
        return Mask::ofBoth(first.byte, data + step + first.offset, second.byte, data + step + second.offset);
    };
    const std::size_t probeCount = std::min(text.size(), probes.size());
    Cursor<Mask> cursor(*this, block);
    bool continues = false;  // Whether the text is in the name that the step begins in.
    for (std::size_t group = 0; group < size; group += groupSize) {
        std::array<std::uint64_t, stepsAtOnce> candidates{};
        candidates.fill(~std::uint64_t{0});
        std::uint64_t any = 1;
        for (std::size_t probe = 0; probe < probeCount && any != 0; probe += 2) {
            any = 0;
            for (std::size_t at = 0; at < stepsAtOnce; ++at) {
                candidates[at] &= placesOfPair(probe, group + at * stepSize);
                any |= candidates[at];
            }
        }
        if (any == 0 && !continues) {
            continue;
        }
        // From here on nearly without branches, which a processor could not predict.
        const std::size_t end = std::min(size, group + groupSize);
        for (std::size_t step = group; step < end; step += stepSize) {
            std::uint64_t places = candidates[(step - group) / stepSize];
            cursor.moveTo(step);
            if (text.size() > probes.size() && places != 0) {
                // Nothing more is looked for in a name that has the text.
                places = confirmed(continues ? behindName(places, 1, cursor.ends()) : places, cursor.ends(),
                                   data + step, text);
            }
            // The sum carries from any place in a name to the NUL at its end, or out of the step.
            std::uint64_t carried = 0;
            continues = __builtin_add_overflow(~cursor.ends(), places | (continues ? 1 : 0), &carried);
            found.insert(base + cursor.number(), Mask::gather(carried, cursor.ends()));
        }
    }
}

void NumberedNames::searchPlainly(std::size_t block, std::string_view text, std::uint32_t base, BitSet& found) const {
    searchBy<ByteMask::Common>(block, text, base, found);
}

#ifdef DUSKFERN_AVX2
// Everything is inlined: what is not is compiled without these instructions.
DUSKFERN_AVX2 [[gnu::flatten]] void NumberedNames::searchWide(std::size_t block, std::string_view text,
                                                              std::uint32_t base, BitSet& found) const {
    searchBy<ByteMask::Wide>(block, text, base, found);
}

void NumberedNames::search(std::size_t block, std::string_view text, std::uint32_t base, BitSet& found) const {
    ByteMask::Wide::isSupported() ? searchWide(block, text, base, found) : searchPlainly(block, text, base, found);
}
#else
void NumberedNames::search(std::size_t block, std::string_view text, std::uint32_t base, BitSet& found) const {
    searchPlainly(block, text, base, found);
}
#endif
