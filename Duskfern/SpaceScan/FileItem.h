#pragma once

#include "Foundation/FileURL.h"
#include "SpaceScan/FileCategory.h"

#include <cstdint>

/// A file found by a scan.
struct FileItem {
    FileURL url;                                  ///< Its location; identifies it in lists.
    std::int64_t size = 0;                        ///< Bytes allocated on disk.
    FileCategory category = FileCategory::other;  ///< By its name when it was scanned.

    [[nodiscard]] const FileURL& id() const { return url; }

    /// The file name as text for the screen.
    [[nodiscard]] QString name() const { return displayText(url.lastPathComponent()); }

    /// The name of the folder that contains it, without the path.
    [[nodiscard]] QString parent() const { return displayText(url.deletingLastPathComponent().lastPathComponent()); }

    bool operator==(const FileItem&) const = default;
};

template <>
struct std::hash<FileItem> {
    size_t operator()(const FileItem& item) const noexcept {
        return qHashMulti(0, std::hash<FileURL>{}(item.url), item.size, static_cast<int>(item.category));
    }
};
