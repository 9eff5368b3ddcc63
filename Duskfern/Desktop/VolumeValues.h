#pragma once

#include "Foundation/MountTable.h"

#include <QtCore/QString>

#include <cstdint>
#include <optional>

/// What a mounted volume reports; unknown values are none.
struct VolumeValues {
    std::optional<QString> name;
    std::optional<std::int64_t> total;                               ///< Bytes.
    std::optional<std::int64_t> availableCapacityForImportantUsage;  ///< Bytes; never known on Linux.
    std::optional<std::int64_t> available;                           ///< Bytes that this user can still write.

    bool operator==(const VolumeValues&) const = default;
};

/// Queries the file system at a mount point; nothing if that is not a folder, now belongs to another mount, or cannot
/// be read. May block as long as the mount does, possibly forever.
[[nodiscard]] std::optional<VolumeValues> valuesOf(const Mount& mount);
