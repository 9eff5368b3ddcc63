#pragma once

#include <QtCore/QLocale>
#include <QtCore/QString>

#include <string_view>

/// Compares names as a person searching does: without regard to case by the rules of a language, and alike for
/// spellings that are canonically equivalent (an accented letter, and the letter followed by its accent). Accents
/// themselves count.
class NameFolding {
public:
    explicit NameFolding(const QLocale& locale);

    /// Two texts that are to be taken for the same fold to the same text.
    [[nodiscard]] QString fold(QString text) const;

private:
    bool m_turkic = false;  ///< Where "I" is the capital of a dotless letter and "İ" that of "i".

    friend class NameMatcher;
};

/// Finds one text in many names.
class NameMatcher {
public:
    NameMatcher(const NameFolding& folding, const QString& text);

    /// Whether the name, given as its bytes, contains the text. Every name contains the empty one.
    [[nodiscard]] bool matches(std::string_view name) const;

private:
    NameFolding m_folding;
    QString m_text;
    std::string m_ascii;  ///< The folded text if a name of ASCII alone can contain it.
    bool m_isASCII = false;
};
