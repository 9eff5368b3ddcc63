#pragma once

#include "SpaceScan/BitSet.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

/// A `BitSet` with access by rank: the numbers in ascending order by index. Quicker to build and smaller than a vector
/// of them, when only the first few are read.
class RankedBitSet {
public:
    explicit RankedBitSet(BitSet set) : m_set(std::move(set)) {
        const std::vector<std::uint64_t>& words = m_set.m_words;
        m_ranks.reserve(words.size() / wordsPerRank + 1);
        for (std::size_t word = 0; word < words.size(); ++word) {
            if (word % wordsPerRank == 0) {
                m_ranks.push_back(m_size);
            }
            m_size += static_cast<std::uint32_t>(std::popcount(words[word]));
        }
    }

    [[nodiscard]] std::size_t size() const { return m_size; }

    /// The number of this rank in ascending order, from 0; it must exist.
    [[nodiscard]] std::uint32_t operator[](std::size_t rank) const {
        const auto found = std::upper_bound(m_ranks.begin(), m_ranks.end(), rank) - 1;
        auto word = static_cast<std::size_t>(found - m_ranks.begin()) * wordsPerRank;
        for (rank -= *found; rank >= static_cast<std::size_t>(std::popcount(m_set.m_words[word])); ++word) {
            rank -= static_cast<std::size_t>(std::popcount(m_set.m_words[word]));
        }
        std::uint64_t rest = m_set.m_words[word];
        for (; rank > 0; --rank) {
            rest &= rest - 1;
        }
        return static_cast<std::uint32_t>(word * BitSet::bits + BitSet::lowestBit(rest));
    }

    /// Calls `visit` with each number, ascending.
    template <class Visit>
    void forEach(Visit visit) const {
        m_set.forEach(visit);
    }

private:
    /// `m_ranks` has one entry per this many words.
    static constexpr std::size_t wordsPerRank = 8;

    BitSet m_set;
    std::vector<std::uint32_t> m_ranks;
    std::uint32_t m_size = 0;
};
