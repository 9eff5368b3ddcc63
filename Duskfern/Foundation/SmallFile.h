#pragma once

#include <cstddef>
#include <optional>
#include <string>

enum class FollowLinks { yes, no };

/// The first `limit` bytes of the regular file `path`, relative to the open folder `directory` (or AT_FDCWD); nothing,
/// with errno set, if there is no readable regular file. Never waits for a pipe or a device. Leaves the access time
/// unchanged if the user owns the file. `FollowLinks::no` refuses a link as the last component.
[[nodiscard]] std::optional<std::string> readSmallFile(int directory, const char* path, std::size_t limit,
                                                       FollowLinks links = FollowLinks::yes);
