#pragma once

#include "Desktop/UserFolders.h"

/// The user's folders by the environment and `user-dirs.dirs`, read anew each time.
class XdgUserFolders final : public UserFolders {
public:
    [[nodiscard]] UserFolderPaths paths() override;
};
