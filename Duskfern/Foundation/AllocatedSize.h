#pragma once

#include "Foundation/DirectoryWalk.h"

#include <cstdint>
#include <stop_token>

/// Bytes that the regular files below the folder `url` take on disk, each path counted once, hidden entries left out,
/// links not followed (but `url` itself is, if it is one). 0 where there is no folder or it cannot be listed; what
/// cannot be read below it is passed over. `policy` decides which folders are entered. Walks on the calling thread and
/// may take minutes; keeps nothing but the sum. `stop` ends it early with what it has, because nobody waits any more.
[[nodiscard]] std::int64_t allocatedSizeBelow(const FileURL& url, const DirectoryWalk::Policy& policy,
                                              const std::stop_token& stop = {},
                                              const std::vector<MountPoint>& mounts = mountPoints());
