#pragma once

#include "Foundation/FileURL.h"

#include <optional>

/// The location that a typed or pasted text names: an absolute path, a path from the home folder ("~"), a "file:" URI,
/// or a path relative to `shown`. "." and ".." and repeated slashes are resolved in the text, without accessing the
/// disk. Nothing if the text names no location.
[[nodiscard]] std::optional<FileURL> typedPath(const QString& text, const FileURL& home, const FileURL& shown);
