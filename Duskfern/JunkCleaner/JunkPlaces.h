#pragma once

#include "Desktop/UserFolders.h"
#include "JunkCleaner/JunkItem.h"
#include "JunkCleaner/KeepTable.h"

#include <optional>
#include <string_view>
#include <vector>

/// One folder whose direct children may be junk.
struct JunkPlace {
    FileURL url;
    JunkKind kind = JunkKind::cache;
    KeepList keep = KeepList::none;
    std::optional<int> olderThanDays = {};  ///< Only what has not been changed for that many calendar days.
    bool isFlatpakData = false;             ///< Its children are named after Flatpaks.
};

/// All places that are looked at, and nothing else ever is.
struct JunkPlaces {
    std::vector<JunkPlace> places;  ///< In the order in which they are looked at.

    /// What no item may be or contain, whatever the places are set to: a person's own folders, the first of them the
    /// home, and those in which applications keep what a person has made.
    std::vector<FileURL> personal;
    std::vector<FileURL> support;
};

/// The places of a user. The folders may be set to anything: the cache to the home, for instance.
[[nodiscard]] JunkPlaces junkPlaces(const UserFolderPaths& paths);

/// What a person reads of where a cache, log or temporary entry comes from: the last piece of its name between dots,
/// every "com." left out before; `fallback` when nothing remains.
[[nodiscard]] QString originName(const QString& name, const QString& fallback);
