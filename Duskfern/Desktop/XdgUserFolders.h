#pragma once

#include "Desktop/UserFolders.h"

/// The user's folders by the environment and `user-dirs.dirs`, read anew each time. A purpose that is named no longer
/// keeps its last folder until the program ends; GLib forgets none.
class XdgUserFolders final : public UserFolders {
public:
    [[nodiscard]] UserFolderPaths paths() override;
};
