#pragma once

#include "Foundation/FileURL.h"

#include <optional>

/// Where a user and the user's programs keep things.
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

    /// Where programs keep things for the user; "/" where that is not known.
    FileURL cacheHome;
    FileURL stateHome;
    FileURL dataHome;
    FileURL configHome;
    FileURL temporary;
};

/// The user's folders as the desktop knows them.
class UserFolders {
public:
    virtual ~UserFolders() = default;

    /// What is known without asking a disk: none is named for a purpose, but perhaps the desktop. Any thread.
    [[nodiscard]] virtual UserFolderPaths fromEnvironment() = 0;

    /// As they are now, the named ones among them. Reads a small file, and does without where that does not answer for
    /// `diskPatience`; any thread but the window's.
    [[nodiscard]] virtual UserFolderPaths paths() = 0;
};
