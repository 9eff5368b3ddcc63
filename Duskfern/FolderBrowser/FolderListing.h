#pragma once

#include <string>
#include <vector>

/// A folder in the current one.
struct FolderEntry {
    std::string name;     ///< As bytes.
    bool isLink = false;  ///< Whether it is a link to a folder.

    bool operator==(const FolderEntry&) const = default;
};

/// The folders in one folder, or why it cannot be listed.
struct FolderListing {
    enum class Outcome {
        listed,
        missing,       ///< It does not exist.
        notFolder,     ///< It is not a folder.
        notPermitted,  ///< The user may not list it.
        failed,        ///< Any other error.
    };

    Outcome outcome = Outcome::failed;
    std::vector<FolderEntry> folders;  ///< Sorted by Spanish collation, digits by value, ignoring case.
};
