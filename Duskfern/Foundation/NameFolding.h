#pragma once

#include <QtCore/QLocale>
#include <QtCore/QString>

#include <optional>
#include <string>
#include <string_view>

/// Folds names for searching: two texts that should match fold to the same bytes. Ignores case by the rules of a
/// language, and treats canonically equivalent spellings (an accented letter, and a letter followed by a combining
/// accent) as the same. Accents are not ignored.
class NameFolding {
public:
    explicit NameFolding(const QLocale& locale);

    /// Appends the folded form of a name to `folded`. The result is UTF-8 whatever the name's bytes are.
    void fold(std::string_view name, std::string& folded) const;

    /// The folded form of a search text; nothing if no name can contain it (invalid UTF-16, or NUL).
    [[nodiscard]] std::optional<std::string> foldText(const QString& text) const;

private:
    [[nodiscard]] bool foldLatin(std::string_view name, std::string& folded) const;
    [[nodiscard]] QString foldUnicode(QString text) const;

    bool m_turkic = false;  ///< Turkish and Azerbaijani: "I" is the capital of "ı" and "İ" that of "i".
};
