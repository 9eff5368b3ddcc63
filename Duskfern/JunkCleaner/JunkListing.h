#pragma once

#include "Foundation/FileStatus.h"
#include "JunkCleaner/JunkPlaces.h"

#include <functional>
#include <string>
#include <vector>

/// The direct children of one place that may be junk by name, owner and age.
struct JunkListing {
    struct Entry {
        std::string name;
        FileStatus status;
    };

    std::string path;  ///< Path of the place without links; empty if it cannot be opened.
    std::vector<Entry> entries;
};

/// Lists a place. Calls `opened` with its path without links, then `found` with each entry as soon as it is read; both
/// may be called on a thread that nobody waits for any more. Leaves out hidden entries, names in the keep table, links
/// and special files, other users' entries, and entries that are too new. A place for temporary files on a memory file
/// system has no entries. Blocks as long as the disk does.
void listJunkPlace(const JunkPlace& place, const std::function<void(const std::string& path)>& opened,
                   const std::function<void(JunkListing::Entry)>& found);
