#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <numeric>
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

    /// Removes the numbers of `others`, a set with the same limit.
    void subtract(const BitSet& others) {
        std::transform(m_words.begin(), m_words.end(), others.m_words.begin(), m_words.begin(),
                       [](std::uint64_t word, std::uint64_t other) { return word & ~other; });
    }

    /// Raises the limit.
    void resize(std::size_t count) { m_words.resize((count + bits - 1) / bits); }

    /// Keeps only the numbers that are in `others`, too, a set with the same limit.
    void intersect(const BitSet& others) {
        std::transform(m_words.begin(), m_words.end(), others.m_words.begin(), m_words.begin(), std::bit_and<>());
    }

    /// Adds all numbers below `count`.
    void fill(std::size_t count) {
        std::fill_n(m_words.begin(), count / bits, ~std::uint64_t{0});
        if (count % bits != 0) {
            m_words[count / bits] |= (std::uint64_t{1} << (count % bits)) - 1;
        }
    }

    [[nodiscard]] bool contains(std::uint32_t number) const {
        return (m_words[number / bits] >> (number % bits) & 1) != 0;
    }

    /// How many numbers it holds.
    [[nodiscard]] std::size_t count() const {
        return std::accumulate(m_words.begin(), m_words.end(), std::size_t{0}, [](std::size_t sum, std::uint64_t word) {
            return sum + static_cast<std::size_t>(std::popcount(word));
        });
    }

    /// Calls `visit` with each number, ascending.
    template <class Visit>
    void forEach(Visit visit) const {
        for (std::size_t word = 0; word < m_words.size(); ++word) {
            for (std::uint64_t rest = m_words[word]; rest != 0; rest &= rest - 1) {
                visit(static_cast<std::uint32_t>(word * bits + lowestBit(rest)));
            }
        }
    }

private:
    static constexpr std::size_t bits = 64;

    static unsigned lowestBit(std::uint64_t word) { return static_cast<unsigned>(std::countr_zero(word)); }

    std::vector<std::uint64_t> m_words;
};
