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

    /// Adds `first` plus the place of each bit in `places`.
    void insert(std::uint32_t first, std::uint64_t places) {
        const std::size_t shift = first % bits;
        m_words[first / bits] |= places << shift;
        if (const std::uint64_t rest = shift > 0 ? places >> (bits - shift) : 0; rest != 0) {
            m_words[first / bits + 1] |= rest;
        }
    }

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

    /// For each i in `ranks`, inserts the i-th number of `numbers`, a set with the same limit as this one.
    void insertRanked(const BitSet& ranks, const BitSet& numbers) {
        std::size_t rank = 0;
        for (std::size_t word = 0; word < m_words.size(); ++word) {
            std::uint64_t rest = numbers.m_words[word];
            const auto count = static_cast<std::size_t>(std::popcount(rest));
            for (std::uint64_t wanted = ranks.bitsFrom(rank, count); wanted != 0; wanted >>= 1) {
                m_words[word] |= (wanted & 1) != 0 ? rest & (~rest + 1) : 0;
                rest &= rest - 1;
            }
            rank += count;
        }
    }

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

    /// Which of `count` numbers beginning with `first`, at most 64, it holds.
    [[nodiscard]] std::uint64_t bitsFrom(std::size_t first, std::size_t count) const {
        if (count == 0) {
            return 0;
        }
        const std::size_t word = first / bits;
        const std::size_t shift = first % bits;
        std::uint64_t found = m_words[word] >> shift;
        if (shift > 0 && word + 1 < m_words.size()) {
            found |= m_words[word + 1] << (bits - shift);
        }
        return count < bits ? found & ((std::uint64_t{1} << count) - 1) : found;
    }

    static unsigned lowestBit(std::uint64_t word) { return static_cast<unsigned>(std::countr_zero(word)); }

    std::vector<std::uint64_t> m_words;
};
