#pragma once

#include <sys/stat.h>

/// Gives the entry `to` of the open folder `toFolder` the owner (where allowed), the extended attributes with the
/// access control lists, the mode and the times of the entry `from` of `fromFolder`, of a link itself. `toFolder` is a
/// folder where nobody else works. 0, or the error number; ENOTSUP where an attribute of a person's or an access
/// control list cannot be kept. What belongs to the system (security labels, tuning) is kept as far as it goes.
[[nodiscard]] int copyAttributes(int fromFolder, const char* from, int toFolder, const char* to,
                                 const struct stat& source);
