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

/// Whether file managers show a Trash at the top of the file system that is mounted at `path`: not where the mount is
/// the system's own by their rules, or marked as having none. Reads the mount table.
[[nodiscard]] bool isTrashShownAt(const std::string& path);
