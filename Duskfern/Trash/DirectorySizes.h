#pragma once

#include "Trash/TrashFolder.h"

/// Notes in the Trash's `directorysizes` how much the folder `name`, which lies in it, takes on disk, so that nobody
/// has to measure it to show how full the Trash is. The file is replaced as a whole; where that fails it stays as it
/// was, because whoever reads it measures what is not in it.
void noteDirectorySize(const TrashFolder& trash, const std::string& name, std::int64_t bytes);

/// `sizes`, the contents of such a file, with an entry for the folder `name` whose note was written at `noted`, instead
/// of any other for that name. Lines that make no sense are left out.
[[nodiscard]] std::string withDirectorySize(std::string_view sizes, std::string_view name, std::int64_t bytes,
                                            std::int64_t noted);
