#pragma once

#include "Foundation/MountTable.h"

#include <vector>

class FileURL;

/// The file systems of a mount table that a user would call a disk, in the table's order: "/" in any case, block
/// devices, network file systems and users' FUSE mounts. Not kernel and service file systems, memory file systems,
/// layers over other file systems, images of package systems, boot partitions, and mounts marked hidden. For each, its
/// mounts in the order in which to query them: "/", else the shortest mount point of its root, and mounts of parts of
/// it last. A mount of a part may be a single file, as in containers.
[[nodiscard]] std::vector<std::vector<Mount>> visibleDisks(const std::vector<Mount>& table);

/// The current mount points of these, without accessing any. Leaves out disks of which only a part is mounted.
[[nodiscard]] std::vector<FileURL> diskFolders();

/// Whether the mount's file system is a FUSE one, other than one that reads a block device.
[[nodiscard]] bool isFuse(const Mount& mount);
