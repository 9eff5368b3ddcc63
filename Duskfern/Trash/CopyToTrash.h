#pragma once

#include "Trash/TrashFolder.h"

/// Copies `item` into the Trash folder `trash` of another file system, then removes the original. The copy is made in a
/// private folder inside the Trash, synced and compared, and only then recorded and renamed into place. If anything
/// fails before part of the original is removed, the copy is removed.
[[nodiscard]] std::optional<TrashError> copyToTrash(const TrashItem& item, const TrashFolder& trash,
                                                    const Trash::Progress& progress, const std::stop_token& stop);
