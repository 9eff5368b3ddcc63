#pragma once

#include <cstddef>
#include <optional>
#include <string>

enum class FollowLinks { yes, no };

/// The first `limit` bytes of the regular file `path`, relative to the open folder `directory` (AT_FDCWD for none);
/// nothing, with errno set, when there is no such file that can be read. A pipe or a device of that name is not waited
/// for. Leaves the access time alone where the file is the user's own. `FollowLinks::no` refuses a link as the last
/// component.
[[nodiscard]] std::optional<std::string> readSmallFile(int directory, const char* path, std::size_t limit,
                                                       FollowLinks links = FollowLinks::yes);
