#pragma once

#include "Foundation/MountTable.h"

/// The label that the file system of a mount carries, as bytes; empty when it has none or it cannot be found out.
/// `folder` is an open descriptor of the mount point. May block as long as the mount does.
[[nodiscard]] std::string volumeLabel(const Mount& mount, int folder);
