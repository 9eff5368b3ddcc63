#pragma once

#include "Desktop/Trash.h"
#include "Foundation/Descriptor.h"

#include <string>

/// An item to be moved, held by descriptors: whatever is renamed or replaced meanwhile, checks, moves and removals
/// apply to the folder that was opened first.
struct TrashItem {
    std::string name;
    Descriptor parent;  ///< The folder that contains it, for access to entries by name.
    Descriptor item;    ///< The item itself; a link is not followed.
    FileStatus parentStatus;
    FileStatus status;
    std::string path;  ///< Without links and dots; as given if the real path is too long to be read.

    /// Whether `name` in `parent` is still this item.
    [[nodiscard]] bool isInPlace() const;
};

/// Opens the item at `url`. Returns nothing, or why that failed.
[[nodiscard]] std::optional<TrashError> openTrashItem(const FileURL& url, TrashItem& item);
