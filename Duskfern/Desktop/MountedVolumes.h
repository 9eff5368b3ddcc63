#pragma once

#include "Foundation/MountTable.h"

#include <QtCore/QString>

#include <cstdint>
#include <optional>
#include <vector>

/// What a mounted volume says of itself; what it does not know is none.
struct VolumeValues {
    std::optional<QString> name;
    std::optional<std::int64_t> total;                               ///< Bytes.
    std::optional<std::int64_t> availableCapacityForImportantUsage;  ///< Bytes; not known on Linux.
    std::optional<std::int64_t> available;                           ///< Bytes this user can still write.
};

/// The mounted volumes that a person would call a disk.
class MountedVolumes {
public:
    virtual ~MountedVolumes() = default;

    /// One mount a volume, in the system's order; none when the system does not tell.
    [[nodiscard]] virtual std::optional<std::vector<Mount>> visibleMounts() = 0;

    /// What each mount says of itself, in the same order; nothing for one that cannot be read or does not answer
    /// soon. Returns within half a second, whatever the mounts do.
    [[nodiscard]] virtual std::vector<std::optional<VolumeValues>> values(const std::vector<Mount>& mounts) = 0;
};
