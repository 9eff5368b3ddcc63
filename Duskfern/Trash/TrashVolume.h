#pragma once

#include "Foundation/Descriptor.h"

#include <string>

/// The top folder of a mounted file system.
struct TrashVolume {
    Descriptor top;
    std::string path;
};

/// The top of the file system that contains the open folder `folder`; `top` is not open if it cannot be determined.
[[nodiscard]] TrashVolume volumeOf(int folder);
