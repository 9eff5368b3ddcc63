#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

/// A set of numbers below a fixed limit, stored as one bit each.
class BitSet {
public:
    /// An empty set for numbers below `count`.
    explicit BitSet(std::size_t count = 0) : m_words((count + bits - 1) / bits) {}

    void insert(std::uint32_t number) { m_words[number / bits] |= std::uint64_t{1} << (number % bits); }

    void erase(std::uint32_t number) { m_words[number / bits] &= ~(std::uint64_t{1} << (number % bits)); }

    /// Adds the numbers of `others`, a set with the same limit.
    void insert(const BitSet& others) {
        std::transform(m_words.begin(), m_words.end(), others.m_words.begin(), m_words.begin(), std::bit_or<>());
    }

    /// Removes the numbers for which `keep` is false.
    template <class Keep>
    void filter(Keep keep) {
        forEach([&](std::uint32_t number) {
            if (!keep(number)) {
                erase(number);
            }
        });
    }

    /// Calls `visit` with each number, ascending; `visit` may erase that number.
    template <class Visit>
    void forEach(Visit visit) const {
        for (std::size_t word = 0; word < m_words.size(); ++word) {
            for (std::uint64_t rest = m_words[word]; rest != 0; rest &= rest - 1) {
                visit(static_cast<std::uint32_t>(word * bits + lowestBit(rest)));
            }
        }
    }

private:
    friend class RankedBitSet;

    static constexpr std::size_t bits = 64;

    static unsigned lowestBit(std::uint64_t word) { return static_cast<unsigned>(std::countr_zero(word)); }

    std::vector<std::uint64_t> m_words;
};
