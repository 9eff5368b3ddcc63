#pragma once

#include "Foundation/NameArena.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <functional>
#include <numeric>
#include <string_view>
#include <vector>

/// A set of files, by their keys.
class KeySet {
public:
    explicit KeySet(std::size_t count) : m_words((count + 63) / 64) {}

    void insert(std::uint32_t key) { m_words[key / 64] |= std::uint64_t{1} << (key % 64); }

    void erase(std::uint32_t key) { m_words[key / 64] &= ~(std::uint64_t{1} << (key % 64)); }

    [[nodiscard]] std::size_t count() const {
        return std::accumulate(m_words.begin(), m_words.end(), std::size_t{0}, [](std::size_t sum, std::uint64_t word) {
            return sum + static_cast<std::size_t>(std::popcount(word));
        });
    }

    /// Adds the keys of a set for as many files.
    void insert(const KeySet& others) {
        std::transform(m_words.begin(), m_words.end(), others.m_words.begin(), m_words.begin(), std::bit_or<>());
    }

    /// Calls `visit` with each key, ascending.
    template <class Visit>
    void forEach(Visit visit) const {
        for (std::size_t word = 0; word < m_words.size(); ++word) {
            for (std::uint64_t bits = m_words[word]; bits != 0; bits &= bits - 1) {
                visit(static_cast<std::uint32_t>(word * 64 + static_cast<unsigned>(__builtin_ctzll(bits))));
            }
        }
    }

private:
    std::vector<std::uint64_t> m_words;
};

/// The folded names that one worker of a scan has met, in that order.
class FoldedNames {
public:
    void append(std::string_view folded);

    [[nodiscard]] std::uint32_t size() const { return m_size; }
    [[nodiscard]] bool hasRoom() const { return m_names.hasRoom(); }

    /// Calls `found` with the number of each name that contains `text`, ascending. `text` is not empty and contains no
    /// NUL.
    template <class Found>
    void search(std::string_view text, Found found) const;

private:
    class Cursor;

    /// Only each of so many names has its position noted; the ones between are counted.
    static constexpr std::uint32_t stride = 16;

    NameArena m_names;
    std::vector<std::uint32_t> m_positions;  ///< Of the names 0, 16, 32, …
    std::vector<std::uint32_t> m_firsts;     ///< The number of the first name of each block.
    std::uint32_t m_size = 0;
};

/// Finds names in a list of files. The folded names stay where the scan's workers put them, and a search is one pass
/// over that memory; where a file stands in the list is kept beside it.
class SearchIndex {
public:
    /// Takes over the names of one worker. Its file number `n` is from now on number `n` plus what is returned.
    std::uint32_t add(FoldedNames&& names);

    /// Says where each file stands: `keys[number]`.
    void setKeys(std::vector<std::uint32_t> keys) { m_keys = std::move(keys); }

    /// The keys of all files whose folded names contain `text`, which is folded too.
    [[nodiscard]] KeySet search(std::string_view text) const;

private:
    struct Part {
        std::uint32_t base = 0;  ///< The number of its first file.
        FoldedNames names;
    };
    std::vector<Part> m_parts;
    std::vector<std::uint32_t> m_keys;
    std::uint32_t m_size = 0;
};
