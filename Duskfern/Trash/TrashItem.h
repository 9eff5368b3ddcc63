#pragma once

#include "Desktop/Trash.h"
#include "Foundation/Descriptor.h"

#include <string>

/// Something that is to be moved, held by descriptors: whatever is renamed or swapped meanwhile, what is checked, moved
/// and removed lies in the folder that was opened first.
struct TrashItem {
    std::string name;
    Descriptor parent;  ///< The folder it lies in; only to name things in it.
    Descriptor item;    ///< Itself; a link is not followed.
    FileStatus parentStatus;
    FileStatus status;
    std::string
        path;  ///< Where it really lies, without links and dots. As it was given where that is too long to tell.

    /// Whether what has its name now is still the same.
    [[nodiscard]] bool isInPlace() const;
};

/// Opens what lies at `url` into `item`. Nothing, or why that is not possible.
[[nodiscard]] std::optional<TrashError> openTrashItem(const FileURL& url, TrashItem& item);

/// Where an open file or folder really is; nothing where the path is too long to tell.
[[nodiscard]] std::optional<std::string> pathOfOpen(int descriptor);
