#pragma once

#include "Foundation/FileURL.h"

#include <optional>

/// The folders of a user and of the user's programs.
struct UserFolderPaths {
    FileURL home;
    FileURL systemRoot;  ///< "/", the parent of the system's folders.

    /// The folders that the user has assigned to a purpose, if any.
    std::optional<FileURL> music;
    std::optional<FileURL> videos;
    std::optional<FileURL> pictures;
    std::optional<FileURL> documents;
    std::optional<FileURL> desktop;
    std::optional<FileURL> downloads;

    /// Where programs store data for the user; "/" if unknown.
    FileURL cacheHome;
    FileURL stateHome;
    FileURL dataHome;
    FileURL configHome;
    FileURL temporary;
};

/// The user's folders as configured in the desktop.
class UserFolders {
public:
    virtual ~UserFolders() = default;

    /// The folders known without accessing a disk: none is assigned to a purpose, except perhaps the desktop. Any
    /// thread may call it.
    [[nodiscard]] virtual UserFolderPaths fromEnvironment() = 0;

    /// The current folders, including those assigned to a purpose. Reads a small file; without its contents if it does
    /// not answer within `diskTimeout`. Any thread but the main thread may call it.
    [[nodiscard]] virtual UserFolderPaths paths() = 0;
};
