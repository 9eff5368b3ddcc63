#pragma once

#include <cstdint>
#include <optional>

/// What is asked of an entry of a folder.
struct FileStatus {
    std::uint16_t mode = 0;      ///< As in `st_mode`.
    std::int64_t allocated = 0;  ///< Bytes it takes on disk.
};

/// The status of the entry `name` of the open folder `directory`, of a link itself; never sets off an automount.
/// Nothing if it cannot be read, for instance because it vanished.
[[nodiscard]] std::optional<FileStatus> fileStatus(int directory, const char* name);
