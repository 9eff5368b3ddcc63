#pragma once

#include "Foundation/LateAnswer.h"
#include "JunkCleaner/JunkItem.h"
#include "JunkCleaner/JunkPlaces.h"

#include <functional>
#include <memory>
#include <stop_token>
#include <vector>

class InstalledApplications;

/// The result of a scan for junk.
struct JunkScan {
    std::vector<JunkItem> items;             ///< Largest first, without empty ones.
    std::shared_ptr<LateAnswer> lateAnswer;  ///< Null unless something was skipped after a timeout.
};

/// Scans for junk. Only lists and measures, and changes nothing. Stateless; may run on any thread.
namespace JunkScanner {

/// Whether an item could be moved to the Trash. May block, and may be called after the scan has ended.
using Movable = std::function<bool(const FileURL&)>;

/// All junk in the places that is movable. What cannot be listed or read gives no items; what does not answer is
/// skipped, but entries of its place that were read before are listed. Never listed: hidden entries and links, mount
/// points and folders that contain one, other users' files, names in the keep table, folders that contain a personal or
/// support folder, and anything twice. A place that is a personal folder or contains the home is not scanned, and one
/// for caches, logs or temporary files not if it contains a support folder. Listed, but not safe, is what holds what
/// may exist only once or belongs to a running program; a leftover that holds it is not listed. May take long; `stop`
/// ends it early.
[[nodiscard]] JunkScan scan(const JunkPlaces& places, const std::shared_ptr<const InstalledApplications>& applications,
                            const Movable& isMovable, const std::stop_token& stop = {});

}  // namespace JunkScanner
