#pragma once

#include "Foundation/FileStatus.h"

/// Renames `from` of the open folder `fromFolder` to `to` of `toFolder` without replacing an existing entry. Where the
/// file system does not support RENAME_NOREPLACE, a file is linked under its new name and then unlinked, and a folder
/// could replace at most an empty folder created at the same moment. Returns 0, or the error number with nothing
/// changed: EEXIST if the name is taken, EXDEV if the target is on another file system.
[[nodiscard]] int renameWithoutReplacing(int fromFolder, const char* from, int toFolder, const char* to,
                                         const FileIdentity& item);

/// Whether the entry `name` of the open folder `folder` exists, also as a dangling link.
[[nodiscard]] bool isTaken(int folder, const char* name);

/// Makes the entries of an open folder survive a power cut. Returns 0 or the error number. Returns 0 also where the
/// file system cannot sync folders, or the folder may not be read.
[[nodiscard]] int syncFolder(int folder);
