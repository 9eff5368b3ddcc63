#pragma once

#include "Desktop/UserFolders.h"

#include <string_view>

/// Sets in `paths` the folders that `userDirs`, the contents of a `user-dirs.dirs`, assigns to purposes. Of several
/// lines for one purpose the last one counts, and malformed lines are skipped. A folder that is neither absolute nor in
/// the home counts as none, and so does the home itself, as defined by xdg-user-dirs.
void setNamedFolders(std::string_view userDirs, UserFolderPaths& paths);
