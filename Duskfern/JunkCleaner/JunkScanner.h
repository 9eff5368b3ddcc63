#pragma once

#include "Foundation/DiskPatience.h"
#include "JunkCleaner/JunkItem.h"
#include "JunkCleaner/JunkPlaces.h"

#include <functional>
#include <memory>
#include <stop_token>
#include <vector>

class InstalledApplications;

/// What a look for junk has found.
struct JunkScan {
    std::vector<JunkItem> items;             ///< Largest first, without what is empty.
    std::shared_ptr<LateAnswer> lateAnswer;  ///< Null unless something did not answer and was passed over.
};

/// Looks for what can go. Only lists and measures, changes nothing. Holds no state; may run on any thread.
namespace JunkScanner {

/// Whether an item could be moved to the Trash. May block, and be called after the scan is over.
using Movable = std::function<bool(const FileURL&)>;

/// Everything found in the places that is movable. What cannot be listed or read yields nothing; what does not answer
/// is passed over, and the rest of its place is listed. Never listed: hidden entries and links, what is or holds a
/// mount point, what belongs to another user, what the keep table names, what a personal or support folder lies in, and
/// anything twice. A place that is itself such a folder, or one for caches or logs with one inside, is not looked into.
/// May take long; `stop` ends it early because nobody waits any more.
[[nodiscard]] JunkScan scan(const JunkPlaces& places, const std::shared_ptr<const InstalledApplications>& applications,
                            const Movable& isMovable, const std::stop_token& stop = {});

}  // namespace JunkScanner
