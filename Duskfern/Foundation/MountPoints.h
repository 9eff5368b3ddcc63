#pragma once

#include "Foundation/MountTable.h"

/// The mount table as walks take it.
using MountPoint = Mount;

/// The mounts at this moment; none when the kernel does not tell.
[[nodiscard]] inline std::vector<MountPoint> mountPoints() {
    return readMountTable().value_or(std::vector<Mount>());
}
