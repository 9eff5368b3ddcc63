#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// One row of the mount table.
struct Mount {
    std::int64_t id = -1;         ///< The kernel's mount number; -1 if unknown.
    std::uint64_t device = 0;     ///< Device number of the file system, the same for all its mounts; 0 if unknown.
    std::string root = "/";       ///< The folder of the file system that is mounted.
    std::string target = "/";     ///< The mount point: absolute, without links, as bytes.
    std::string type;             ///< "ext4", "nfs4", "fuse.sshfs" …
    std::string source;           ///< A device, "server:/export", a pool's dataset …
    bool isMarkedHidden = false;  ///< Whether x-gvfs-hide is among its options.
};

/// The current mount table of this process in the kernel's order, with the options that fstab and the utab add; nothing
/// if it cannot be read. "/" is always in it. Accesses no mounted file system except "/". The paths are for tests:
/// files in the format of /proc/self/mountinfo and /etc/fstab.
[[nodiscard]] std::optional<std::vector<Mount>> readMountTable(const char* mountinfo = "/proc/self/mountinfo",
                                                               const char* fstab = nullptr);

/// Whether something in `table` is mounted at or below `path`, which contains no links.
[[nodiscard]] bool holdsMount(std::string_view path, const std::vector<Mount>& table);

/// `readMountTable()`, empty if the table cannot be read.
[[nodiscard]] std::vector<Mount> currentMounts();
