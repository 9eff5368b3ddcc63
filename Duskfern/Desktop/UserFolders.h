#pragma once

#include "Foundation/FileURL.h"

#include <optional>

/// Where a user keeps things.
struct UserFolderPaths {
    FileURL home;
    FileURL systemRoot;  ///< Where the system's own folders begin: "/".

    /// The folders that the user has named for a purpose; none where nothing is named.
    std::optional<FileURL> music;
    std::optional<FileURL> videos;
    std::optional<FileURL> pictures;
    std::optional<FileURL> documents;
    std::optional<FileURL> desktop;
    std::optional<FileURL> downloads;
};

/// The user's folders as the desktop knows them.
class UserFolders {
public:
    virtual ~UserFolders() = default;

    /// As they are now. Returns at once; on the main thread only.
    [[nodiscard]] virtual UserFolderPaths paths() = 0;
};
