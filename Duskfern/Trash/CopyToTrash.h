#pragma once

#include "Trash/TrashFolder.h"

/// Copies `item` into the Trash folder `trash` of another file system and then removes the original: copied to a
/// private place beside what is in the Trash, brought to the disk, compared, noted, renamed to its name. Whatever fails
/// before anything of the original is gone takes the copy back.
[[nodiscard]] std::optional<TrashError> copyToTrash(const TrashItem& item, const TrashFolder& trash,
                                                    const Trash::Progress& progress, const std::stop_token& stop);
