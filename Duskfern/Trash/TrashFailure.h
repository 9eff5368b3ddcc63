#pragma once

#include "Desktop/Trash.h"

/// What a system call's error number says about a move. `disk` is a descriptor on the file system concerned, which
/// tells a lack of space from a lack of room for one more file.
[[nodiscard]] TrashError trashErrorOf(int number, int disk);

/// The same for what was done to a Trash folder: that it is missing or closed is not the item's fault.
[[nodiscard]] TrashError trashFolderErrorOf(int number, int disk);
