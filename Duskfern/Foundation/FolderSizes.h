#pragma once

#include "Foundation/DirectoryWalk.h"

#include <cstdint>
#include <memory>
#include <stop_token>
#include <vector>

/// The allocated size of folders.
struct FolderSizes {
    std::vector<std::int64_t> bytes;         ///< One per folder, in the order given.
    std::shared_ptr<LateAnswer> lateAnswer;  ///< Null unless something was skipped after a timeout.
};

/// Bytes that the regular files below each folder take on disk. A hard link counts once for each of its paths; hidden
/// entries are left out; links are not followed, except `folders` themselves. 0 where there is no folder or it cannot
/// be listed; unreadable entries and unknown sizes count as 0. `policy` decides which folders are entered; `mounts` is
/// as for `DirectoryWalk`. Walks on several threads and may take minutes. Ends the program when a sum exceeds 64 bits.
/// `stop` ends the walk early, with the sums so far.
[[nodiscard]] FolderSizes folderSizes(std::vector<WalkRoot> folders, const DirectoryWalk::Policy& policy,
                                      const std::stop_token& stop = {},
                                      const std::vector<Mount>& mounts = currentMounts());
