#pragma once

#include "Foundation/Descriptor.h"

#include <string>

/// The top of the mounted file system that an open folder lies in.
struct TrashVolume {
    Descriptor top;
    std::string path;
};

/// The top folder above the open folder `folder`; its `top` is not open where that cannot be found out.
[[nodiscard]] TrashVolume volumeOf(int folder);
