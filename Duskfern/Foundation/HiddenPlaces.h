#pragma once

#include "Foundation/MountTable.h"
#include "Foundation/NameSet.h"

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

/// Folders with ordinary names that hold no files of a person: the system's own folders in "/", and mounts of kernel
/// file systems. A walk hides them when it meets them, not when it begins in one.
class HiddenPlaces {
public:
    HiddenPlaces() = default;

    /// The hidden places below the absolute path `root`, given the mount table `mounts`, and the paths `others`. No
    /// path contains a link.
    HiddenPlaces(std::string_view root, const std::vector<Mount>& mounts, const std::vector<std::string>& others);

    /// False if no folder whose path relative to the root has this length has hidden names. Saves making the path.
    [[nodiscard]] bool mayHaveNamesIn(std::size_t pathLength) const {
        return !m_byFolder.empty() && pathLength <= m_longestFolder;
    }

    /// The names hidden in a folder, given its path relative to the root ("" for the root); null if there are none.
    [[nodiscard]] const NameSet* namesIn(const std::string& folder) const;

private:
    std::unordered_map<std::string, NameSet> m_byFolder;
    std::size_t m_longestFolder = 0;  ///< Bytes.
};
