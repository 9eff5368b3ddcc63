#pragma once

#include "Desktop/InstalledApplications.h"

#include <QtCore/QSet>

#include <vector>

/// `text` in lower case with nothing but its letters and digits, so that spellings of one name become equal: blanks,
/// punctuation and symbols go, accents stay, composed and decomposed characters are the same.
[[nodiscard]] QString normalized(const QString& text);

/// Tells whose remains are whose by the names of what is installed, each reduced to a token.
class InstalledAppTokens {
public:
    explicit InstalledAppTokens(const InstalledNames& names);

    /// Whether an entry of that name, found among applications' data, matches nothing that is installed. Names of three
    /// letters and digits or fewer are too short to tell. A token matches when either contains the other; a short one
    /// of a program or menu entry only when they are equal, because "id" or "ar" is part of nearly every name.
    [[nodiscard]] bool isOrphaned(const QString& name) const;

    /// Whether the data of a Flatpak with that identifier belong to none that is installed.
    [[nodiscard]] bool isOrphanedFlatpak(std::string_view id) const;

private:
    std::vector<QString> m_parts;  ///< Match as a part of a name or around it.
    QSet<QString> m_wholeNames;    ///< Match as they are.
    NameSet m_flatpaks;
};
