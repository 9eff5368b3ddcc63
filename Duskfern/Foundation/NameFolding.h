#pragma once

#include <QtCore/QLocale>
#include <QtCore/QString>

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>

/// Folds names for searching: two texts that should match fold to the same bytes. Ignores case by the rules of a
/// language, and treats canonically equivalent spellings (an accented letter, and a letter followed by a combining
/// accent) as the same. Accents are not ignored.
class NameFolding {
public:
    explicit NameFolding(const QLocale& locale);

    /// Whether the folded form of a name only differs from it in the case of its letters, all of which are ASCII.
    [[nodiscard]] bool foldsToLowerCase(std::string_view name) const {
        return std::all_of(name.begin(), name.end(), [this](char byte) {
            return static_cast<unsigned char>(byte) < 0x80 && !(m_turkic && byte == 'I');
        });
    }

    /// Appends the folded form of a name to `folded`. The result is UTF-8 whatever the name's bytes are.
    void fold(std::string_view name, std::string& folded) const;

    /// The folded form of a search text; nothing if no name can contain it (invalid UTF-16, or NUL).
    [[nodiscard]] std::optional<std::string> foldText(const QString& text) const;

private:
    [[nodiscard]] bool foldLatin(std::string_view name, std::string& folded) const;
    [[nodiscard]] QString foldUnicode(QString text) const;

    bool m_turkic = false;  ///< Turkish and Azerbaijani: "I" is the capital of "ı" and "İ" that of "i".
};
