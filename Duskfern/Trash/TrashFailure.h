#pragma once

#include "Desktop/Trash.h"

/// The error that a system call's error number means for a move. `disk` is a descriptor on the file system concerned,
/// which is asked to tell ENOSPC for space from that for inodes.
[[nodiscard]] TrashError trashErrorOf(int number, int disk);

/// The same for an operation on a Trash folder: a missing or unreadable Trash is reported as that, not as the item's
/// fault.
[[nodiscard]] TrashError trashFolderErrorOf(int number, int disk);
