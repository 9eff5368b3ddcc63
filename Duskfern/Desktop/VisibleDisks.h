#pragma once

#include "Foundation/MountTable.h"

#include <vector>

class FileURL;

/// The file systems of a mount table that a person would call a disk, in the table's order: "/" whatever it is, block
/// devices, network file systems and what users mount by FUSE. Not: what the kernel or services make up, what lies on
/// memory, layers over other file systems, images of package systems, what the system boots from, and what is marked
/// hidden. Of each, the mounts at which it may be asked, the best first: "/" or else the shortest mount point of its
/// root, and parts of it last. A mount of a part may turn out to be a file: containers mount single ones.
[[nodiscard]] std::vector<std::vector<Mount>> visibleDisks(const std::vector<Mount>& table);

/// Where those of this moment are mounted, without a look at any. Left out are disks of which only parts are.
[[nodiscard]] std::vector<FileURL> diskFolders();

/// Whether a program makes up the file system of a mount, other than one that reads a block device.
[[nodiscard]] bool isFuse(const Mount& mount);
