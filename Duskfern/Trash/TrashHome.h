#pragma once

#include "Foundation/FileURL.h"

/// The folders of a user that determine where the Trash is and what must not be moved there.
struct TrashHome {
    FileURL home;
    FileURL dataHome;  ///< Contains the home Trash.

    /// From the environment: HOME, and XDG_DATA_HOME or its default.
    [[nodiscard]] static TrashHome ofUser();

    [[nodiscard]] FileURL trash() const { return dataHome.appendingPathComponent("Trash"); }
};
