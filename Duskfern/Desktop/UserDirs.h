#pragma once

#include "Desktop/UserFolders.h"

#include <string_view>

/// Sets the folders that the text of a `user-dirs.dirs` names for a purpose. The last of several lines holds; a line that
/// is malformed or names a folder that is neither absolute nor in the home is passed over, and the home itself stands
/// for none, as xdg-user-dirs has it.
void setNamedFolders(std::string_view userDirs, UserFolderPaths& paths);
