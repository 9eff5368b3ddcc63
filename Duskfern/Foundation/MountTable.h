#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// One row of the mount table.
struct Mount {
    std::int64_t id = -1;         ///< The kernel's number of the mount; -1 when not known.
    std::uint64_t device = 0;     ///< The number of the file system, the same for all its mounts; 0 when not known.
    std::string root = "/";       ///< The part of the file system that is mounted.
    std::string target = "/";     ///< Where: absolute, without links, as bytes.
    std::string type;             ///< "ext4", "nfs4", "fuse.sshfs" …
    std::string source;           ///< A device, "server:/export", a pool's dataset …
    bool isMarkedHidden = false;  ///< The administrator or the mounter does not want it shown.
};

/// The mount table of this process at this moment, as the kernel has it, in its order, with what the administrator
/// (fstab) and the mount utility (utab) noted about its rows; none when it cannot be read. "/" is always in it. Asks
/// "/" and nothing else that is mounted. The paths are of files in the forms of /proc/self/mountinfo and /etc/fstab
/// and are there for tests.
[[nodiscard]] std::optional<std::vector<Mount>> readMountTable(const char* mountinfo = "/proc/self/mountinfo",
                                                               const char* fstab = nullptr);

/// Whether something of `table` is mounted at `path`, which has no links, or anywhere below it.
[[nodiscard]] bool holdsMount(std::string_view path, const std::vector<Mount>& table);

/// The same without the difference between an empty table and one that cannot be read.
[[nodiscard]] std::vector<Mount> currentMounts();
