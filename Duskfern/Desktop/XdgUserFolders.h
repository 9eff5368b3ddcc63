#pragma once

#include "Desktop/UserFolders.h"

/// The user's folders from the environment and `user-dirs.dirs`.
class XdgUserFolders final : public UserFolders {
public:
    [[nodiscard]] UserFolderPaths fromEnvironment() override;
    [[nodiscard]] UserFolderPaths paths() override;
};
