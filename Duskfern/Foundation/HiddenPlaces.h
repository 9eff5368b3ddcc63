#pragma once

#include "Foundation/FileURL.h"
#include "Foundation/MountTable.h"

#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

/// Lets a set of strings be asked with a view.
struct NameHash {
    using is_transparent = void;
    size_t operator()(std::string_view name) const noexcept { return std::hash<std::string_view>{}(name); }
};

/// Names of entries of one folder.
class NameSet {
public:
    void insert(std::string_view name) { m_names.emplace(name); }
    [[nodiscard]] bool contains(std::string_view name) const { return m_names.contains(name); }

    /// Adds the names of `other`.
    const NameSet& merge(const NameSet& other) {
        m_names.insert(other.m_names.begin(), other.m_names.end());
        return *this;
    }

private:
    std::unordered_set<std::string, NameHash, std::equal_to<>> m_names;
};

/// The file with which a folder hides some of its entries, one name a line, as file managers honour it.
constexpr std::string_view hiddenListName = ".hidden";

/// The names in the ".hidden" of an open folder; none if there is no such regular file. At most 1 MiB of it is read.
[[nodiscard]] NameSet hiddenNames(int directory);

/// What is not a person's file though it has an ordinary name: the system's own folders in "/", and mounts of file
/// systems that the kernel makes up. They are hidden when a walk meets them, not when it begins in them.
class HiddenPlaces {
public:
    HiddenPlaces() = default;

    /// Those that lie below the absolute path `root` while `mounts` are all there are, and the paths `others`. No path
    /// leads over a link.
    HiddenPlaces(std::string_view root, const std::vector<Mount>& mounts, const std::vector<std::string>& others);

    /// Whether a folder whose path relative to the root has that many bytes may have any.
    [[nodiscard]] bool mayHaveNamesIn(std::size_t pathLength) const {
        return !m_byFolder.empty() && pathLength <= m_longestFolder;
    }

    /// The names hidden in a folder given by its path relative to the root ("" for the root); null where there are
    /// none.
    [[nodiscard]] const NameSet* namesIn(const std::string& folder) const;

private:
    std::unordered_map<std::string, NameSet> m_byFolder;
    std::size_t m_longestFolder = 0;  ///< Bytes.
};
