#pragma once

#include "SpaceScan/BitSet.h"
#include "SpaceScan/FoldedNames.h"

#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

/// Searches the names of a list of files. The folded names stay in the arenas that the workers filled, and a search is
/// one pass over that memory.
class SearchIndex {
public:
    /// Takes over the names of one worker. Returns what is to be added to its file numbers.
    std::uint32_t add(FoldedNames&& names);

    /// Sets the key in the list of each file: `keys[number]`.
    void setKeys(std::vector<std::uint32_t> keys) { m_keys = std::move(keys); }

    /// The keys of all files whose folded names contain `text`, which must be folded too.
    [[nodiscard]] BitSet search(std::string_view text) const;

private:
    struct Part {
        std::uint32_t base = 0;  ///< Number of its first file.
        FoldedNames names;
    };
    std::vector<Part> m_parts;
    std::vector<std::uint32_t> m_keys;
    std::uint32_t m_size = 0;
};
