#pragma once

#include "Foundation/FileURL.h"

/// The folders of a user that decide where the Trash is and what never goes there.
struct TrashHome {
    FileURL home;
    FileURL dataHome;  ///< Holds the home Trash.

    /// As the environment says: HOME, and XDG_DATA_HOME or what stands for it.
    [[nodiscard]] static TrashHome ofUser();

    [[nodiscard]] FileURL trash() const { return dataHome.appendingPathComponent("Trash"); }
};
