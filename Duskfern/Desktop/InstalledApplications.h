#pragma once

#include "Foundation/NameSet.h"

#include <QtCore/QString>

#include <vector>

/// The names of installed applications. May contain duplicates.
struct InstalledNames {
    std::vector<QString> bundles;       ///< Names of application bundles, and the last components of their identifiers.
    std::vector<QString> programs;      ///< Names of programs, menu entries and games.
    std::vector<QString> applications;  ///< The last parts of the identifiers of menu entries, without common words.
    std::vector<QString> words;  ///< Names that count only as a whole: of packages, makers, parts of identifiers.
    bool isComplete = true;      ///< False if something could not be read for lack of descriptors or memory.
    NameSet identifiers;         ///< Whole identifiers of Flatpaks and menu entries, as bytes.
};

/// The applications of the system and of the user.
class InstalledApplications {
public:
    virtual ~InstalledApplications() = default;

    /// The current names; unreadable entries are left out. Reads many small files. Thread-safe.
    [[nodiscard]] virtual InstalledNames names() const = 0;
};
