#pragma once

#include "Foundation/NameArena.h"
#include "SpaceScan/KeySet.h"

#include <cstdint>
#include <string_view>
#include <vector>

/// The folded names that one worker of a scan has met, in that order.
class FoldedNames {
public:
    void append(std::string_view folded);

    [[nodiscard]] std::uint32_t size() const { return m_size; }
    [[nodiscard]] bool hasRoom() const { return m_names.hasRoom(); }

    [[nodiscard]] std::size_t blockCount() const { return m_names.blockCount(); }

    /// Calls `found` with the number of each name in that block that contains `text`, ascending. `text` is not empty
    /// and contains no NUL.
    template <class Found>
    void search(std::size_t block, std::string_view text, Found found) const;

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
