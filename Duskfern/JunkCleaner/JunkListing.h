#pragma once

#include "Foundation/FileStatus.h"
#include "JunkCleaner/JunkPlaces.h"

#include <functional>
#include <string>
#include <vector>

/// What lies directly in one place, as far as its name, its owner and its age let it be junk.
struct JunkListing {
    struct Entry {
        std::string name;
        FileStatus status;
    };

    std::string path;  ///< Of the place, without links; empty where there is no such folder to look into.
    std::vector<Entry> entries;
};

/// Reads a place and hands each entry over as soon as it is known: `found` gets the path first, with no entry, and may
/// be called on a thread that is not waited for any more. Left out are hidden entries, what the keep table names, links
/// and special files, other users' entries, and what is too young. A place for temporary files that lies in memory has
/// none. Blocks as the disk does.
void listJunkPlace(const JunkPlace& place, const std::function<void(const std::string& path)>& opened,
                   const std::function<void(JunkListing::Entry)>& found);
