#pragma once

#include "Foundation/FileURL.h"
#include "SpaceScan/FileCategory.h"

#include <cstdint>

/// One file that a scan found.
struct FileItem {
    FileURL url;                                  ///< Where it is; its identity in lists.
    std::int64_t size = 0;                        ///< Bytes it takes on disk.
    FileCategory category = FileCategory::other;  ///< By its name, at the time of the scan.

    [[nodiscard]] const FileURL& id() const { return url; }

    /// The file's name as people read it.
    [[nodiscard]] QString name() const { return displayText(url.lastPathComponent()); }

    /// The name of the folder it lies in, without the path to it.
    [[nodiscard]] QString parent() const { return displayText(url.deletingLastPathComponent().lastPathComponent()); }

    bool operator==(const FileItem&) const = default;
};

template <>
struct std::hash<FileItem> {
    size_t operator()(const FileItem& item) const noexcept {
        return qHashMulti(0, std::hash<FileURL>{}(item.url), item.size, static_cast<int>(item.category));
    }
};
