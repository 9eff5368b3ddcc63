#pragma once

#include "JunkCleaner/JunkItem.h"
#include "JunkCleaner/JunkPlaces.h"

#include <cstdint>
#include <stop_token>
#include <vector>

class InstalledApplications;

/// Looks for what can go. Only lists and measures, changes nothing. Holds no state; may run on any thread.
namespace JunkScanner {

/// Everything found in the places, largest first, without what is empty. What cannot be listed or read yields nothing.
/// Never listed: hidden entries and links, what is or holds a mount point, what belongs to another user, what the keep
/// table names, what a personal or support folder lies in, and anything twice. A place that is itself such a folder, or
/// one for caches or logs with one inside, is not looked into. May take long; `stop` ends it early because nobody waits
/// any more.
[[nodiscard]] std::vector<JunkItem> scan(const JunkPlaces& places, const InstalledApplications& applications,
                                         const std::stop_token& stop = {});

/// Bytes on disk of a file, or of the files in a folder without hidden ones, links and the contents of packages; 0 for
/// anything else. Nothing is mounted in there.
[[nodiscard]] std::int64_t allocatedSize(const FileURL& url, const std::stop_token& stop = {});

}  // namespace JunkScanner
