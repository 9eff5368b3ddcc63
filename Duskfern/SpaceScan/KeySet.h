#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <utility>
#include <vector>

/// A set of files, by their keys: one bit a file.
class KeySet {
public:
    /// An empty set of keys below `count`.
    explicit KeySet(std::size_t count = 0) : m_words((count + bits - 1) / bits) {}

    void insert(std::uint32_t key) { m_words[key / bits] |= std::uint64_t{1} << (key % bits); }

    void erase(std::uint32_t key) { m_words[key / bits] &= ~(std::uint64_t{1} << (key % bits)); }

    /// Adds the keys of a set for as many files.
    void insert(const KeySet& others) {
        std::transform(m_words.begin(), m_words.end(), others.m_words.begin(), m_words.begin(), std::bit_or<>());
    }

    /// Keeps only the keys for which `keep` is true.
    template <class Keep>
    void filter(Keep keep) {
        forEach([&](std::uint32_t key) {
            if (!keep(key)) {
                erase(key);
            }
        });
    }

    /// Calls `visit` with each key, ascending; `visit` may take it out.
    template <class Visit>
    void forEach(Visit visit) const {
        for (std::size_t word = 0; word < m_words.size(); ++word) {
            for (std::uint64_t rest = m_words[word]; rest != 0; rest &= rest - 1) {
                visit(static_cast<std::uint32_t>(word * bits + lowest(rest)));
            }
        }
    }

private:
    friend class RankedKeys;

    static constexpr std::size_t bits = 64;

    static unsigned lowest(std::uint64_t word) { return static_cast<unsigned>(std::countr_zero(word)); }

    std::vector<std::uint64_t> m_words;
};

/// The keys of a set in ascending order, each to be had by its rank. Takes less to make and to copy than a list of
/// them, of which a screen shows but the first.
class RankedKeys {
public:
    explicit RankedKeys(KeySet keys) : m_keys(std::move(keys)) {
        const std::vector<std::uint64_t>& words = m_keys.m_words;
        m_before.reserve(words.size() / group + 1);
        for (std::size_t word = 0; word < words.size(); ++word) {
            if (word % group == 0) {
                m_before.push_back(m_size);
            }
            m_size += static_cast<std::uint32_t>(std::popcount(words[word]));
        }
    }

    [[nodiscard]] std::size_t size() const { return m_size; }

    /// The key that `rank` smaller ones are in the set; there must be one.
    [[nodiscard]] std::uint32_t operator[](std::size_t rank) const {
        const auto found = std::upper_bound(m_before.begin(), m_before.end(), rank) - 1;
        auto word = static_cast<std::size_t>(found - m_before.begin()) * group;
        for (rank -= *found; rank >= static_cast<std::size_t>(std::popcount(m_keys.m_words[word])); ++word) {
            rank -= static_cast<std::size_t>(std::popcount(m_keys.m_words[word]));
        }
        std::uint64_t rest = m_keys.m_words[word];
        for (; rank > 0; --rank) {
            rest &= rest - 1;
        }
        return static_cast<std::uint32_t>(word * KeySet::bits + KeySet::lowest(rest));
    }

    /// Calls `visit` with each key, ascending.
    template <class Visit>
    void forEach(Visit visit) const {
        m_keys.forEach(visit);
    }

private:
    /// So many words have their number of smaller keys noted once.
    static constexpr std::size_t group = 8;

    KeySet m_keys;
    std::vector<std::uint32_t> m_before;
    std::uint32_t m_size = 0;
};
