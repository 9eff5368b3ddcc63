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
    BitSet isFolded;  ///< The numbers of the names in `folded`, which has them in the same order.
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
        std::uint32_t base = 0;        ///< Number of its first name.
        std::uint32_t foldedBase = 0;  ///< How many folded names come before its own.
        NumberedNames names;
        NumberedNames folded;
    };

    struct Found {
        BitSet names;   ///< By number.
        BitSet folded;  ///< By their place among the folded names.
    };
    [[nodiscard]] Found searchBlocks(std::string_view text) const;

    std::vector<Part> m_parts;
    BitSet m_isFolded;  ///< The numbers of the names that have a folded form.
    std::uint32_t m_size = 0;
    std::uint32_t m_foldedSize = 0;
};
