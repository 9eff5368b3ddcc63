#pragma once

#include <sys/stat.h>

/// Copies owner (if permitted), extended attributes with access control lists, mode and times from the entry `from` of
/// the open folder `fromFolder` to the entry `to` of `toFolder`. Does not follow links. `toFolder` must be private to
/// the caller. Returns 0 or the error number; ENOTSUP if a user attribute or an access control list cannot be kept.
/// Other attributes (security labels, system tuning) are copied where possible.
[[nodiscard]] int copyAttributes(int fromFolder, const char* from, int toFolder, const char* to,
                                 const struct stat& source);
