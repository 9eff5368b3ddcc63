#pragma once

#include "Desktop/VolumeValues.h"
#include "Foundation/FileURL.h"

#include <functional>
#include <vector>

/// Where a volume is mounted, and what it says of itself.
struct MountedVolume {
    FileURL url;
    VolumeValues values;

    bool operator==(const MountedVolume&) const = default;
};

/// The mounted volumes that a person would call a disk. Lives on the main thread.
class MountedVolumes {
public:
    using Answers = std::vector<MountedVolume>;  ///< One a volume, in the system's order.

    virtual ~MountedVolumes() = default;

    /// Asks all volumes anew and returns those that have answered soon; a volume that cannot be read is left out.
    /// Returns within 400 ms, whatever the mounts do, and within about 60 ms if the disk mounted at "/" answers.
    /// `later` is called on the main thread whenever more have answered after that, with all that have by then. A newer
    /// call puts its `later` in the place of the older one's.
    [[nodiscard]] virtual Answers ask(std::function<void(const Answers&)> later) = 0;
};
