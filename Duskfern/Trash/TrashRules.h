#pragma once

#include "Foundation/MountTable.h"
#include "Trash/TrashHome.h"
#include "Trash/TrashItem.h"

#include <stop_token>

/// Why an item never goes to the Trash or cannot be taken from where it lies, as far as the item itself, its folder and
/// `mounts` show; nothing else. Looks at nothing inside.
[[nodiscard]] std::optional<TrashError> reasonAgainst(const TrashItem& item, const TrashHome& home,
                                                      const std::vector<Mount>& mounts);

/// What there is to know about a folder before it moves as a whole.
struct FolderSurvey {
    std::int64_t allocated = 0;  ///< Bytes on disk of all that could be seen.
};

/// Looks through the folder that `item` is. An error where something in it would keep the Trash from being emptied: a
/// mount, something protected, a folder of somebody else that is not empty and that the user may not write.
[[nodiscard]] std::optional<TrashError> surveyFolder(const TrashItem& item, FolderSurvey& survey,
                                                     const std::stop_token& stop);
