#pragma once

#include "Foundation/StringArena.h"
#include "SpaceScan/BitSet.h"

#include <cstdint>
#include <string_view>
#include <vector>

/// Names in order, which can be searched and found by their number.
class NumberedNames {
public:
    /// Folding can triple the length of a name; longer texts cannot be in it.
    static constexpr std::size_t longestText = 3 * StringArena::maximumSearchLength;

    void append(std::string_view name);

    [[nodiscard]] std::uint32_t size() const { return m_size; }
    [[nodiscard]] bool hasRoom() const { return m_names.hasRoom(); }

    /// The name of this number. Takes longer than an access to an array, about as long as reading a few names.
    [[nodiscard]] std::string_view at(std::uint32_t number) const;

    [[nodiscard]] std::size_t blockCount() const { return m_names.blockCount(); }

    /// Adds `base` plus the number of each name in that block that contains `text`, whatever the case of ASCII letters.
    /// `text` must be in lower case, and not be empty, contain NUL or be longer than `longestText`.
    void search(std::size_t block, std::string_view text, std::uint32_t base, BitSet& found) const;

    /// The same without the instructions that only newer processors have.
    void searchPlainly(std::size_t block, std::string_view text, std::uint32_t base, BitSet& found) const;

private:
    template <class Mask>
    class Cursor;

    template <class Mask>
    void searchBy(std::size_t block, std::string_view text, std::uint32_t base, BitSet& found) const;
    void searchWide(std::size_t block, std::string_view text, std::uint32_t base, BitSet& found) const;

    /// The position of every 16th name is recorded; the others are found by counting.
    static constexpr std::uint32_t stride = 16;

    StringArena m_names;
    std::vector<std::uint32_t> m_positions;  ///< Of names 0, 16, 32, …
    std::vector<std::uint32_t> m_firsts;     ///< The number of the first name in each block.
    std::uint32_t m_size = 0;
};
