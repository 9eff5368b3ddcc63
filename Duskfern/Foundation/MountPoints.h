#pragma once

#include <string>
#include <vector>

/// Where something is mounted, and what kind of file system it is.
struct MountPoint {
    std::string path;  ///< Absolute, without links.
    std::string type;  ///< "ext4", "proc", "fuse.sshfs" …
};

/// The mount points at this moment, in the order in which they were mounted; none when the kernel does not tell.
[[nodiscard]] std::vector<MountPoint> mountPoints();
