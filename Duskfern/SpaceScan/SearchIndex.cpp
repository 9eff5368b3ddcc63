#include "SpaceScan/SearchIndex.h"

#include "Foundation/Threads.h"
#include "SpaceScan/BytePlaces.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <thread>
#include <utility>

namespace {

/// A name can be three times as long when it is folded, and no longer text can be found in it.
constexpr std::size_t longestText = 3 * NameArena::maximumLength;

using BytePlaces::stepSize;
static_assert(longestText + 2 * stepSize < NameArena::slack);

/// A keystroke is spread over no more threads than this: more do not read the memory any faster.
constexpr std::size_t maximumThreads = 4;

/// The two bytes of a text that a search looks for first.
struct Probe {
    std::size_t first = 0;
    std::size_t second = 0;
};

/// The rarer the bytes, the fewer places there are to look at closely. What is rare is learnt from a sample.
Probe rarestBytes(std::string_view text, const NameArena::Block& block) {
    std::array<std::uint32_t, 256> counts{};
    for (const char byte : std::string_view(block.data, std::min<std::size_t>(block.size, 4096))) {
        ++counts.at(static_cast<unsigned char>(byte));
    }
    const auto count = [&](std::size_t at) { return counts.at(static_cast<unsigned char>(text[at])); };
    Probe probe;
    for (std::size_t at = 1; at < text.size(); ++at) {
        probe.first = count(at) < count(probe.first) ? at : probe.first;
    }
    probe.second = text.size() > 1 && probe.first == 0 ? 1 : 0;
    for (std::size_t at = 0; at < text.size(); ++at) {
        probe.second = at != probe.first && count(at) < count(probe.second) ? at : probe.second;
    }
    return probe;
}

void reserveOneMore(std::vector<std::uint32_t>& numbers) {
    if (numbers.size() == numbers.capacity()) {
        numbers.reserve(std::max<std::size_t>(64, 2 * numbers.size()));
    }
}

}  // namespace

void FoldedNames::append(std::string_view folded) {
    // What may fail for want of memory comes first: names are counted where they lie, so none may lie there uncounted.
    reserveOneMore(m_positions);
    reserveOneMore(m_firsts);
    const std::size_t blocks = m_names.blockCount();
    const std::uint32_t position = m_names.append(folded);
    if (m_names.blockCount() != blocks) {
        m_firsts.push_back(m_size);
    }
    if (m_size % stride == 0) {
        m_positions.push_back(position);
    }
    ++m_size;
}

/// Counts the names before a place, for places in ascending order.
class FoldedNames::Cursor {
public:
    Cursor(const FoldedNames& names, std::size_t block)
        : m_names(names),
          m_data(names.m_names.block(block).data),
          m_blockPosition(NameArena::position(block, 0)),
          m_number(names.m_firsts[block]) {}

    /// Moves to a step at `offset` of the block.
    void moveTo(std::size_t offset) {
        if (offset > m_offset + far) {
            leapTowards(offset);
        }
        for (; m_offset + stepSize <= offset; m_offset += stepSize) {
            m_number += countOf(m_ends);
            m_ends = endsAt(m_offset + stepSize);
        }
        if (m_offset < offset) {
            m_number += countOf(m_ends & below(offset - m_offset));
            m_offset = offset;
            m_ends = endsAt(offset);
        }
    }

    /// The number of the name with this byte of the step.
    [[nodiscard]] std::uint32_t numberAt(unsigned place) const { return m_number + countOf(m_ends & below(place)); }

    /// Where the name with this byte of the step ends: an offset of the block.
    [[nodiscard]] std::size_t nameEnd(unsigned place) const {
        const std::uint64_t ends = m_ends & ~below(place);
        return ends != 0 ? m_offset + static_cast<unsigned>(std::countr_zero(ends))
                         : m_offset + stepSize + std::strlen(m_data + m_offset + stepSize);
    }

private:
    /// Over longer distances the noted positions are asked.
    static constexpr std::size_t far = 1024;

    static std::uint64_t below(std::size_t place) { return (std::uint64_t{1} << place) - 1; }

    /// Processors have an instruction for it, but not all that the program runs on; without it std::popcount is a call.
    static std::uint32_t countOf(std::uint64_t places) {
        constexpr std::uint64_t all = ~std::uint64_t{0};
        places -= (places >> 1) & (all / 3);
        places = (places & (all / 5)) + ((places >> 2) & (all / 5));
        return static_cast<std::uint32_t>((((places + (places >> 4)) & (all / 17)) * (all / 255)) >> 56);
    }

    [[nodiscard]] std::uint64_t endsAt(std::size_t offset) const { return BytePlaces::of('\0', m_data + offset); }

    /// Moves to the last noted name that begins at or before `offset`, if it is ahead.
    void leapTowards(std::size_t offset) {
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

    const FoldedNames& m_names;
    const char* m_data;
    std::uint32_t m_blockPosition;
    std::uint32_t m_number;    ///< Of the name with the byte at the offset.
    std::size_t m_offset = 0;  ///< Where the step begins.
    std::uint64_t m_ends = endsAt(0);
};

template <class Found>
void FoldedNames::search(std::size_t block, std::string_view text, Found found) const {
    const auto [data, size] = m_names.block(block);
    const Probe probe = rarestBytes(text, {data, size});
    Cursor cursor(*this, block);
    std::size_t next = 0;  // Nothing before it is of interest.
    for (std::size_t step = 0; step < size; step += stepSize) {
        std::uint64_t places = BytePlaces::ofBoth(text[probe.first], data + step + probe.first,  //
                                                  text[probe.second], data + step + probe.second);
        if (places == 0 || next >= step + stepSize) {
            continue;
        }
        if (next > step) {
            places &= ~std::uint64_t{0} << (next - step);
        }
        while (places != 0) {
            const auto place = static_cast<unsigned>(std::countr_zero(places));
            if (std::memcmp(data + step + place, text.data(), text.size()) != 0) {
                places &= places - 1;
                continue;
            }
            cursor.moveTo(step);
            found(cursor.numberAt(place));
            next = cursor.nameEnd(place);
            places = next < step + stepSize ? places & ~std::uint64_t{0} << (next - step) : 0;
        }
    }
}

std::uint32_t SearchIndex::add(FoldedNames&& names) {
    const std::uint32_t base = m_size;
    m_size += names.size();
    m_parts.push_back({base, std::move(names)});
    return base;
}

KeySet SearchIndex::search(std::string_view text) const {
    KeySet keys(m_size);
    if (text.empty() || text.size() > longestText) {
        if (text.empty()) {
            std::for_each(m_keys.begin(), m_keys.end(), [&](std::uint32_t key) { keys.insert(key); });
        }
        return keys;
    }
    std::vector<std::pair<const Part*, std::size_t>> blocks;
    for (const Part& part : m_parts) {
        for (std::size_t block = 0; block < part.names.blockCount(); ++block) {
            blocks.emplace_back(&part, block);
        }
    }
    // Each thread fills a set of its own, and takes the next block when it is done with one.
    const auto cores = static_cast<std::size_t>(std::thread::hardware_concurrency());
    std::vector<KeySet> sets(std::clamp<std::size_t>(std::min(blocks.size(), cores), 1, maximumThreads), keys);
    std::atomic<std::size_t> next = 0;
    Threads::runAll(sets.size(), [&](std::size_t thread) {
        for (std::size_t at = next++; at < blocks.size(); at = next++) {
            const auto [part, block] = blocks[at];
            part->names.search(block, text, [&, base = part->base](std::uint32_t number) {
                sets[thread].insert(m_keys[base + number]);
            });
        }
    });
    std::for_each(sets.begin(), sets.end(), [&](const KeySet& set) { keys.insert(set); });
    return keys;
}
