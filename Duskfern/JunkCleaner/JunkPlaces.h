#pragma once

#include "Desktop/UserFolders.h"
#include "JunkCleaner/JunkItem.h"
#include "JunkCleaner/KeepTable.h"

#include <optional>
#include <string_view>
#include <vector>

/// What is looked for in the items of a place, beside their size.
enum class ContentLook : unsigned char {
    byName,      ///< Nothing, nor whether the program runs: the names alone decide.
    fetched,     ///< Nothing: all of it are copies that the program fetches anew.
    onlyCopies,  ///< What exists only once. An item that has it is not safe, a leftover that has it is not listed.
    localBuilds  ///< What was built on this machine, which the program cannot fetch. An item that has it is not listed.
};

/// A folder whose direct children may be junk, or several such folders.
struct JunkPlace {
    FileURL url;
    JunkKind kind = JunkKind::cache;
    KeepList keep = KeepList::none;
    std::optional<int> olderThanDays = {};  ///< If set, only entries not modified for that many calendar days.
    bool isFlatpakData = false;             ///< Whether the children of `url` are named after Flatpak identifiers.
    ContentLook look = ContentLook::onlyCopies;

    /// Path from `url` to the folders themselves. A component "*" stands for any folder, and "@" for any folder that is
    /// named after the program. Links below `url` are not followed, and no other file system is entered.
    std::string_view below = {};
    std::string_view only = {};     ///< Names of the children that are listed, separated by "|"; empty for all.
    std::string_view except = {};   ///< Names of children that are not listed.
    std::string_view beside = {};   ///< Unless empty, children are listed only if one of these exists as well.
    std::string_view program = {};  ///< Name of the program, if neither the children nor "@" have it.

    /// A folder that `url` lies in and that must be a place to clean itself.
    std::optional<FileURL> within = {};

    /// Names of the program's processes, separated by "|", if they differ from its own; a file with its process number.
    std::string_view processes = {};
    std::optional<FileURL> lockFile = {};
    bool isSafe = true;  ///< False where the program may not have passed on everything yet.
};

/// The places that are scanned. Nothing else is.
struct JunkPlaces {
    std::vector<JunkPlace> places;  ///< In the order of the scan.
    FileURL processes;              ///< Where the kernel tells of running programs: /proc.

    /// Folders that an item must neither be nor contain, however the places are configured: the personal folders, the
    /// home first, and the folders in which applications store user data.
    std::vector<FileURL> personal;
    std::vector<FileURL> support;
};

/// The places of a user. Any of the configured folders may coincide, for instance the cache folder with the home.
[[nodiscard]] JunkPlaces junkPlaces(const UserFolderPaths& paths);

/// The part of a Flatpak's identifier that names the program: the last one that says more than "desktop" or "client".
[[nodiscard]] std::string_view flatpakName(std::string_view identifier);

/// The displayed origin of a cache, log or temporary entry: the part of its name after the last dot, with every "com."
/// removed before; `fallback` if that is empty.
[[nodiscard]] QString originName(const QString& name, const QString& fallback);
