#pragma once

#include "Foundation/FileStatus.h"
#include "JunkCleaner/JunkPlaces.h"

#include <functional>
#include <string>
#include <vector>

/// The direct children of one folder that may be junk by name, owner and age.
struct JunkListing {
    struct Entry {
        std::string name;
        FileStatus status;
    };

    FileURL url;
    std::string path;     ///< Path of the folder without links.
    std::string program;  ///< What "@" stood for; empty if the place has none.
    std::vector<Entry> entries;
};

/// What a place tells.
struct PlaceListing {
    std::string path;                  ///< Path of the place's `url` without links; empty if it cannot be opened.
    std::string within;                ///< Path of the folder it must lie in, if any.
    std::vector<JunkListing> folders;  ///< Those with entries.

    /// A lock that a program has left in a folder, perhaps long ago, and its process number.
    struct Lock {
        std::string path;
        int process = 0;
    };
    std::vector<Lock> locks;
};

/// Lists a place. Calls `report` with each change to make to its listing, as soon as it is read; it may be called on a
/// thread that nobody waits for any more. Leaves out hidden entries, names in the keep table, links and special files,
/// other users' entries, and entries that are too new. A place for temporary files on a memory file system has no
/// entries. Blocks as long as the disk does.
void listJunkPlace(const JunkPlace& place,
                   const std::function<void(const std::function<void(PlaceListing&)>&)>& report);
