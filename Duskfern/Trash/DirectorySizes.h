#pragma once

#include "Trash/TrashFolder.h"

/// Records in the Trash's `directorysizes` how much the folder `name` in it takes on disk, which saves other programs
/// from measuring it. Replaces the file atomically; on failure the file stays as it was, which is harmless: readers
/// measure folders that are not listed.
void recordDirectorySize(const TrashFolder& trash, const std::string& name, std::int64_t bytes);

/// `sizes`, the contents of such a file, with an entry for the folder `name` that replaces any previous one.
/// `infoModified` is the modification time of its .trashinfo file. Malformed lines are dropped.
[[nodiscard]] std::string withDirectorySize(std::string_view sizes, std::string_view name, std::int64_t bytes,
                                            std::int64_t infoModified);
