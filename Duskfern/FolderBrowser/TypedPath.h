#pragma once

#include "Foundation/FileURL.h"

#include <optional>

/// The location that a person means by a text typed or pasted where a folder is asked for: a path from "/" or from the
/// home folder ("~"), a "file:" URI, or a path from the folder that is shown. Dots and doubled slashes are taken out as
/// written, without a look at the disk. Nothing for a text that means no location.
[[nodiscard]] std::optional<FileURL> typedPath(const QString& text, const FileURL& home, const FileURL& shown);
