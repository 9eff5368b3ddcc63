#pragma once

#include "Foundation/DirectoryWalk.h"

#include <cstdint>
#include <memory>
#include <stop_token>
#include <vector>

/// What folders take on disk.
struct FolderSizes {
    std::vector<std::int64_t> bytes;         ///< One number a folder, in their order.
    std::shared_ptr<LateAnswer> lateAnswer;  ///< Null unless something did not answer and was passed over.
};

/// Bytes that the regular files below each of the folders take on disk, each path counted once, hidden entries left
/// out, links not followed (but a folder itself is, if it is one). 0 where there is no folder or it cannot be listed;
/// what cannot be read below it is passed over, and what a file system does not know is 0. `policy` decides which
/// folders are entered, `mounts` are as for `DirectoryWalk`. Walks on several threads and may take minutes. A sum
/// beyond 64 bits ends the program. `stop` ends it early with what it has, because nobody waits any more.
[[nodiscard]] FolderSizes folderSizes(std::vector<WalkRoot> folders, const DirectoryWalk::Policy& policy,
                                      const std::stop_token& stop = {},
                                      const std::vector<Mount>& mounts = currentMounts());
