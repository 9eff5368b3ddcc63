#pragma once

#include "Foundation/HiddenPlaces.h"

#include <QtCore/QString>

#include <vector>

/// What installed applications are called. The same name may occur many times.
struct InstalledNames {
    std::vector<QString> bundles;   ///< Application bundles: their names, and the last pieces of their identifiers.
    std::vector<QString> programs;  ///< Programs and menu entries.
    bool isComplete = true;         ///< False when something could not be read for want of descriptors or memory.
    NameSet identifiers;            ///< Whole identifiers of Flatpaks and menu entries, as bytes.
};

/// The applications of the system and of the user.
class InstalledApplications {
public:
    virtual ~InstalledApplications() = default;

    /// As they are now; what cannot be read has no names. Reads many small files; may be called on any thread, and
    /// while another call runs.
    [[nodiscard]] virtual InstalledNames names() const = 0;
};
