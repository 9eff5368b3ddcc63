#pragma once

#include "Foundation/MountTable.h"
#include "Trash/TrashHome.h"
#include "Trash/TrashItem.h"

#include <stop_token>

/// Why an item must not be moved to the Trash, or cannot be removed from its folder, as far as the item itself, its
/// folder and `mounts` tell; nothing if there is no reason. Does not check its contents.
[[nodiscard]] std::optional<TrashError> refusalReason(const TrashItem& item, const TrashHome& home,
                                                      const std::vector<Mount>& mounts);

/// What is found out about a folder before it is moved.
struct FolderSurvey {
    std::int64_t allocated = 0;  ///< Allocated size of everything that could be read, in bytes.
};

/// Walks through the folder `item`. Returns an error if something in it would prevent the Trash from being emptied: a
/// mount, an immutable file, or another user's folder that is not empty and not writable.
[[nodiscard]] std::optional<TrashError> surveyFolder(const TrashItem& item, FolderSurvey& survey,
                                                     const std::stop_token& stop);
