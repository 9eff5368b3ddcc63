#pragma once

#include "Desktop/VolumeValues.h"
#include "Foundation/FileURL.h"

#include <functional>
#include <vector>

/// A mounted volume and what its file system reports.
struct MountedVolume {
    FileURL url;
    VolumeValues values;

    bool operator==(const MountedVolume&) const = default;
};

/// The mounted volumes that a user would call a disk. Lives on the main thread.
class MountedVolumes {
public:
    using Answers = std::vector<MountedVolume>;  ///< One per volume, in the order of the mount table.

    virtual ~MountedVolumes() = default;

    /// Queries all volumes and returns those that have answered so far; an unreadable volume is left out. Waits up to
    /// 60 ms for all volumes, and up to 400 ms until the one at "/" has answered. After that, `later` is called on the
    /// main thread with all answers whenever more have come. A newer call replaces the `later` of an older one.
    [[nodiscard]] virtual Answers ask(std::function<void(const Answers&)> later) = 0;
};
