#pragma once

#include "Foundation/FileURL.h"

#include <QtCore/QString>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// One row of the mount table.
struct Mount {
    std::int64_t id = -1;         ///< The kernel's number of the mount; -1 when not known.
    std::uint64_t device = 0;     ///< The number of the file system, the same for all its mounts.
    std::string root = "/";       ///< The part of the file system that is mounted.
    std::string target = "/";     ///< Where: absolute, as bytes.
    std::string type;             ///< "ext4", "nfs4", "fuse.sshfs" …
    std::string source;           ///< A device, "server:/export", a pool's dataset …
    bool isMarkedHidden = false;  ///< The administrator or the mounter does not want it shown.
};

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
