#pragma once

#include "Foundation/Descriptor.h"
#include "Foundation/FileURL.h"

#include <optional>
#include <string>
#include <string_view>

/// Opens an absolute path, which may be longer than PATH_MAX, the most that the kernel takes in one call: a longer one
/// is opened in pieces. `flags` are those of open(2); O_CLOEXEC is added. Not open, with errno set, on failure.
[[nodiscard]] Descriptor openPath(const FileURL& url, int flags);

/// The same for a path relative to the open folder `base`. With O_NOFOLLOW no component may be a link; without it links
/// are followed.
[[nodiscard]] Descriptor openPathAt(int base, std::string_view path, int flags);

/// The real path of an open file or folder; nothing if it is too long to be read.
[[nodiscard]] std::optional<std::string> pathOfOpen(int descriptor);
