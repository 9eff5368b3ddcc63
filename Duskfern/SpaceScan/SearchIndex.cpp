#include "SpaceScan/SearchIndex.h"

#include <algorithm>
#include <array>
#include <functional>
#include <thread>

namespace {

/// A name can be three times as long when it is folded, and no longer text can be found in it.
constexpr std::size_t longestText = 3 * NameArena::maximumLength;

/// So many bytes are looked at in one step; few enough for the registers of any processor.
constexpr std::size_t stepSize = 64;
static_assert(longestText + stepSize < NameArena::slack);

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

/// The places in one step where both bytes of a probe are.
class Hits {
public:
    /// Whether there are any. Written so that the compiler turns it into a few vector instructions.
    bool find(const char* step, std::string_view text, const Probe& probe) {
        const char* const firsts = step + probe.first;
        const char* const seconds = step + probe.second;
        const char first = text[probe.first];
        const char second = text[probe.second];
        char any = 0;
        for (std::size_t i = 0; i < stepSize; ++i) {
            const bool hit = (firsts[i] == first) & (seconds[i] == second);  // NOLINT: no branches
            m_marks[i] = hit ? 1 : 0;                                        // NOLINT: no checks
            any = static_cast<char>(any | m_marks[i]);                       // NOLINT
        }
        return any != 0;
    }

    /// The places as bits, the first one lowest.
    [[nodiscard]] std::uint64_t places() const {
        static_assert(stepSize == 64);
        // Moves the lowest bits of eight bytes next to each other.
        constexpr std::uint64_t gather = 0x0102040810204080;
        std::uint64_t places = 0;
        for (unsigned at = 0; at < stepSize; at += 8) {
            std::uint64_t marks = 0;
            std::memcpy(&marks, m_marks.data() + at, sizeof marks);
            places |= (marks * gather >> 56) << at;
        }
        return places;
    }

private:
    std::array<char, stepSize> m_marks{};
};

/// How many names end in `size` bytes, at least sixteen; as many at a time, in any processor's registers.
std::uint32_t countEnds(const char* bytes, std::size_t size) {
    using Lanes [[gnu::vector_size(16)]] = unsigned char;
    constexpr std::size_t width = sizeof(Lanes);
    constexpr Lanes numbers{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15};
    const auto endsAt = [](const char* place) {
        Lanes chunk;
        std::memcpy(&chunk, place, width);
        return static_cast<Lanes>(chunk == 0) & 1;
    };
    std::uint32_t count = 0;
    for (const char* const last = bytes + size - width; bytes <= last;) {
        Lanes ends{};
        // A lane can count to 255.
        for (unsigned step = 0; step < 254 && bytes < last; ++step, bytes += width) {
            ends += endsAt(bytes);
        }
        if (bytes >= last) {
            // Of the last sixteen bytes some were counted before.
            const auto counted = static_cast<unsigned char>(bytes - last);
            ends += endsAt(last) & static_cast<Lanes>(numbers >= counted);
            bytes = last + 1;
        }
        std::array<std::uint64_t, 2> halves{};
        std::memcpy(halves.data(), &ends, width);
        constexpr std::uint64_t everySecond = 0x00FF00FF00FF00FF;
        for (const std::uint64_t half : halves) {
            count += static_cast<std::uint32_t>(
                (((half & everySecond) + ((half >> 8) & everySecond)) * 0x0001000100010001) >> 48);
        }
    }
    return count;
}

}  // namespace

void FoldedNames::append(std::string_view folded) {
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

/// Finds out which name a byte belongs to, for bytes in ascending order.
class FoldedNames::Cursor {
public:
    Cursor(const FoldedNames& names, std::size_t block)
        : m_names(names),
          m_block(block),
          m_number(names.m_firsts[block]),
          m_data(names.m_names.block(block).data),
          m_end(end(0)) {}

    /// Moves to the name with the byte at `offset` of the block.
    void moveTo(std::size_t offset) {
        if (offset > m_end + far) {
            leapTowards(offset);
        }
        if (offset > m_end + near) {
            m_number += countEnds(m_data + m_end, offset - m_end);
            // The name began behind the last end; where is of no interest.
            m_end = end(offset);
        }
        while (m_end <= offset) {
            m_end = end(m_end + 1);
            ++m_number;
        }
    }

    [[nodiscard]] std::uint32_t number() const { return m_number; }

    /// Where the name ends.
    [[nodiscard]] std::size_t nameEnd() const { return m_end; }

private:
    /// Over longer distances the noted positions are asked.
    static constexpr std::size_t far = 4096;

    /// Over shorter distances names are passed one by one; over those between, their ends are counted.
    static constexpr std::size_t near = 64;

    [[nodiscard]] std::size_t end(std::size_t begin) const { return begin + std::strlen(m_data + begin); }

    /// Moves to the last noted name that begins at or before `offset`, if it is ahead.
    void leapTowards(std::size_t offset) {
        const auto from = m_names.m_positions.begin() + m_number / stride;
        const auto mark = std::upper_bound(from, m_names.m_positions.end(), NameArena::position(m_block, offset)) - 1;
        const auto number = static_cast<std::uint32_t>(mark - m_names.m_positions.begin()) * stride;
        if (number > m_number) {
            m_number = number;
            m_end = end(*mark - NameArena::position(m_block, 0));
        }
    }

    const FoldedNames& m_names;
    std::size_t m_block;
    std::uint32_t m_number;
    const char* m_data;
    std::size_t m_end;
};

template <class Found>
void FoldedNames::search(std::string_view text, Found found) const {
    for (std::size_t index = 0; index < m_names.blockCount(); ++index) {
        const NameArena::Block block = m_names.block(index);
        const Probe probe = rarestBytes(text, block);
        Cursor cursor(*this, index);
        std::size_t next = 0;  // Nothing before it is of interest.
        Hits hits;
        for (std::size_t step = 0; step < block.size; step += stepSize) {
            if (next >= step + stepSize || !hits.find(block.data + step, text, probe)) {
                continue;
            }
            std::uint64_t places = hits.places();
            while ((places &= next > step ? ~std::uint64_t{0} << (next - step) : ~std::uint64_t{0}) != 0) {
                const std::size_t at = step + static_cast<unsigned>(__builtin_ctzll(places));
                next = at + 1;
                if (at + text.size() <= block.size && std::memcmp(block.data + at, text.data(), text.size()) == 0) {
                    cursor.moveTo(at);
                    found(cursor.number());
                    next = cursor.nameEnd();
                }
                if (next >= step + stepSize) {
                    break;
                }
            }
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
    // Two threads halve the time of a keystroke; each fills a set of its own.
    const auto half = static_cast<std::ptrdiff_t>(m_parts.size() / 2);
    KeySet others(m_size);
    const auto searchParts = [&](std::ptrdiff_t from, std::ptrdiff_t to, KeySet& found) {
        for (auto part = m_parts.begin() + from; part != m_parts.begin() + to; ++part) {
            part->names.search(text, [&](std::uint32_t number) { found.insert(m_keys[part->base + number]); });
        }
    };
    std::thread helper(searchParts, 0, half, std::ref(others));
    searchParts(half, static_cast<std::ptrdiff_t>(m_parts.size()), keys);
    helper.join();
    keys.insert(others);
    return keys;
}
