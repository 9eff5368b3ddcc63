#pragma once

#include "Foundation/MountTable.h"

#include <functional>
#include <string>
#include <vector>

/// The rows of a mount table that a person would call a disk, one a file system, in the table's order: "/" whatever it
/// is, block devices, network file systems and what users mount by FUSE. Not: what the kernel or services make up, what
/// lies on memory, layers over other file systems, images of package systems, what the system boots from, and what is
/// marked hidden. A file system mounted more than once stands under "/" or else the shortest mount point of its root,
/// or of a part of it where its root is not mounted. `isFolder` is asked about parts of block devices: containers
/// mount single files.
[[nodiscard]] std::vector<Mount> visibleMounts(const std::vector<Mount>& table,
                                               const std::function<bool(const std::string&)>& isFolder);
