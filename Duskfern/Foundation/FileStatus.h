#pragma once

#include "Foundation/FileURL.h"

#include <cstdint>
#include <optional>

/// Identifies an item of the disk by device, inode and kind, to tell it from another one that gets its path later.
/// Valid while the item exists: file systems may give the inode number of a deleted item to a new one.
struct FileIdentity {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::uint16_t kind = 0;  ///< The file type bits of `st_mode` (S_IFMT).

    bool operator==(const FileIdentity&) const = default;

    [[nodiscard]] bool isRegularFile() const;
    [[nodiscard]] bool isFolder() const;
};

/// What the kernel tells about an entry of a folder.
struct FileStatus {
    std::uint16_t mode = 0;  ///< As in `st_mode`.
    FileIdentity identity;
    std::uint32_t owner = 0;                ///< User id.
    std::uint32_t links = 0;                ///< Number of hard links.
    std::int64_t modifiedSeconds = 0;       ///< Since the epoch.
    std::uint32_t modifiedNanoseconds = 0;  ///< Nanoseconds of the above.
    std::int64_t changedSeconds = 0;        ///< Last change of contents or status (ctime).
    std::uint32_t changedNanoseconds = 0;   ///< Nanoseconds of the above.
    bool isMountPoint = false;              ///< False where the kernel does not tell (before 5.8).
    bool isProtected = false;               ///< Immutable or append-only: nobody may rename or remove it.

    std::optional<std::int64_t> allocated;  ///< Bytes it takes on disk; none where the file system does not tell.
    std::int64_t length = 0;                ///< Length in bytes.

    [[nodiscard]] bool isRegularFile() const;
    [[nodiscard]] bool isFolder() const;
};

/// The status of the entry `name` of the open folder `directory`. Does not follow a link and never triggers an
/// automount. An empty name means the descriptor itself. Nothing, with errno set, if it cannot be read, for instance
/// because it vanished. Together with `mountNumber` the only caller of statx in the program.
[[nodiscard]] std::optional<FileStatus> fileStatus(int directory, const char* name);

/// The same for a location of any length.
[[nodiscard]] std::optional<FileStatus> fileStatus(const FileURL& url);

/// The kernel's number of the mount that an open file or folder lies on, as the mount table has it; nothing where the
/// kernel does not tell (before 5.8).
[[nodiscard]] std::optional<std::uint64_t> mountNumber(int descriptor);
