#pragma once

#include "Foundation/MountTable.h"

/// The label of a mounted file system, as bytes; empty if it has none or it cannot be read. `folder` is an open
/// descriptor of the mount point. May block as long as the mount does.
[[nodiscard]] std::string volumeLabel(const Mount& mount, int folder);
