#pragma once

#include "Desktop/UserFolders.h"
#include "JunkCleaner/JunkItem.h"
#include "JunkCleaner/KeepTable.h"

#include <optional>
#include <string_view>
#include <vector>

/// A folder whose direct children may be junk.
struct JunkPlace {
    FileURL url;
    JunkKind kind = JunkKind::cache;
    KeepList keep = KeepList::none;
    std::optional<int> olderThanDays = {};  ///< If set, only entries not modified for that many calendar days.
    bool isFlatpakData = false;             ///< Whether its children are named after Flatpak identifiers.
};

/// The places that are scanned. Nothing else is.
struct JunkPlaces {
    std::vector<JunkPlace> places;  ///< In the order of the scan.

    /// Folders that an item must neither be nor contain, however the places are configured: the personal folders, the
    /// home first, and the folders in which applications store user data.
    std::vector<FileURL> personal;
    std::vector<FileURL> support;
};

/// The places of a user. Any of the configured folders may coincide, for instance the cache folder with the home.
[[nodiscard]] JunkPlaces junkPlaces(const UserFolderPaths& paths);

/// The displayed origin of a cache, log or temporary entry: the part of its name after the last dot, with every "com."
/// removed before; `fallback` if that is empty.
[[nodiscard]] QString originName(const QString& name, const QString& fallback);
