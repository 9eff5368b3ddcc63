#pragma once

#include "Foundation/MountTable.h"

#include <QtCore/QString>

#include <cstdint>
#include <optional>

/// What a mounted volume says of itself; what it does not know is none.
struct VolumeValues {
    std::optional<QString> name;
    std::optional<std::int64_t> total;                               ///< Bytes.
    std::optional<std::int64_t> availableCapacityForImportantUsage;  ///< Bytes; not known on Linux.
    std::optional<std::int64_t> available;                           ///< Bytes this user can still write.

    bool operator==(const VolumeValues&) const = default;
};

/// Asks the file system at a mount point; nothing where that is no folder, belongs to another mount by now or cannot be
/// read. May block for as long as the mount does, without end.
[[nodiscard]] std::optional<VolumeValues> valuesOf(const Mount& mount);
