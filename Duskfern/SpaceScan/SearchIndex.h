#pragma once

#include "SpaceScan/BitSet.h"
#include "SpaceScan/NumberedNames.h"

#include <cstdint>
#include <string_view>
#include <vector>

/// The names that one worker of a scan found. ASCII names fold to their lower case, which a search does as it goes; the
/// folded forms of all others are kept beside them.
struct SearchableNames {
    /// The folded form of the name with this number.
    void addFolded(std::string_view name, std::uint32_t number);

    NumberedNames names;
    NumberedNames folded;
    std::vector<std::uint32_t> foldedNumbers;  ///< The number in `names` of each name in `folded`.
};

/// Searches the names of a list of files, in one pass over their bytes. Each name has a number in the order in which
/// the workers found them.
class SearchIndex {
public:
    /// Takes over the names of one worker. Returns what is to be added to their numbers.
    std::uint32_t add(SearchableNames&& names);

    /// The number of names.
    [[nodiscard]] std::uint32_t size() const { return m_size; }

    [[nodiscard]] std::string_view nameOf(std::uint32_t number) const;

    /// The numbers of all names whose folded form contains `text`, which must be folded too.
    [[nodiscard]] BitSet search(std::string_view text) const;

private:
    struct Part {
        std::uint32_t base;        ///< Number of its first name.
        std::uint32_t foldedBase;  ///< Index into `m_foldedNumbers` of its first folded name.
        NumberedNames names;
        NumberedNames folded;
    };

    /// Numbers, and indices into `m_foldedNumbers`.
    struct Found {
        BitSet names;
        BitSet folded;
    };
    [[nodiscard]] Found searchBlocks(std::string_view text) const;

    std::vector<Part> m_parts;
    std::vector<std::uint32_t> m_foldedNumbers;  ///< The number of each folded name.
    BitSet m_isFolded;                           ///< The same as a set.
    std::uint32_t m_size = 0;
};
