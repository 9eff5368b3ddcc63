#pragma once

#include "Foundation/Descriptor.h"
#include "Foundation/FileURL.h"

/// Opens an absolute location whose path may be longer than the kernel takes in one call (PATH_MAX): such a path is
/// opened piece by piece. `flags` are those of open(2); O_CLOEXEC is added. None, with errno set, when it fails.
[[nodiscard]] Descriptor openPath(const FileURL& url, int flags);

/// The same for a path relative to the open folder `base`. Links on the way are followed unless `flags` has
/// O_NOFOLLOW, which then holds for every component and not only for the last one.
[[nodiscard]] Descriptor openPathAt(int base, std::string_view path, int flags);
