#pragma once

#include "Foundation/FileStatus.h"

/// Renames `from` of the open folder `fromFolder` to `to` of `toFolder`, and never replaces anything of anybody's.
/// Where the file system does not know the kernel's own way, a file gets its new name before it loses the old one, and
/// a folder could at most replace an empty folder that came there in the same moment. 0, or the error number with
/// nothing changed; EEXIST where the name is taken, EXDEV where a rename does not lead there.
[[nodiscard]] int renameWithoutReplacing(int fromFolder, const char* from, int toFolder, const char* to,
                                         const FileIdentity& item);

/// Whether the entry `name` of the open folder `folder` exists, also as a link that leads nowhere.
[[nodiscard]] bool isTaken(int folder, const char* name);

/// Makes the names in an open folder last through a power cut. 0, or the error number; a file system that cannot sync
/// folders is taken to need none, and a folder that may not be read is left to the file system's own time.
[[nodiscard]] int syncFolder(int folder);
