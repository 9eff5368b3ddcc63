#pragma once

#include "Desktop/InstalledApplications.h"

#include <QtCore/QSet>

#include <vector>

/// `text` in lower case with only letters and digits, for comparing names. Accents are kept; composed and decomposed
/// characters become equal.
[[nodiscard]] QString normalized(const QString& text);

/// Recognises data of applications that are not installed, by comparing normalised names.
class InstalledAppTokens {
public:
    explicit InstalledAppTokens(const InstalledNames& names);

    /// Whether an entry of that name among the applications' data matches no installed application. Names of up to
    /// three letters and digits are too short to tell: false. Two names match if either contains the other; short names
    /// of programs and menu entries only if they are equal, because "id" or "ar" is part of nearly every name.
    [[nodiscard]] bool isOrphaned(const QString& name) const;

    /// Whether no Flatpak with that identifier is installed.
    [[nodiscard]] bool isOrphanedFlatpak(std::string_view id) const;

    /// Whether something in a maker's folder shows that an application of that maker is installed: "Painter.conf" with
    /// the name of a program or package, or "Painter" with the last part of the identifier of a menu entry.
    [[nodiscard]] bool isOfApplication(std::string_view name) const;

private:
    std::vector<QString> m_parts;  ///< Match if part of a name or containing it.
    QSet<QString> m_wholeNames;    ///< Match only if equal.
    QSet<QString> m_applications;
    NameSet m_flatpaks;
};
