#pragma once

#include <QtCore/QLocale>
#include <QtCore/QString>

#include <optional>
#include <string>
#include <string_view>

/// Compares names as a person searching does: without regard to case by the rules of a language, and alike for
/// spellings that are canonically equivalent (an accented letter, and the letter followed by its accent). Accents
/// themselves count. Two texts that are to be taken for the same fold to the same bytes.
class NameFolding {
public:
    explicit NameFolding(const QLocale& locale);

    /// Appends the folded form of a name, UTF-8 whatever the name's bytes are.
    void fold(std::string_view name, std::string& folded) const;

    /// The folded form of a search text; none for one that no name can contain.
    [[nodiscard]] std::optional<std::string> foldText(const QString& text) const;

private:
    [[nodiscard]] bool foldLatin(std::string_view name, std::string& folded) const;
    [[nodiscard]] QString foldUnicode(QString text) const;

    bool m_turkic = false;  ///< Where "I" is the capital of a dotless letter and "İ" that of "i".
};

/// Looks for one text in names, one after the other.
class NameMatcher {
public:
    NameMatcher(const NameFolding& folding, const QString& text) : m_folding(folding), m_text(folding.foldText(text)) {}

    /// Whether the name, given as its bytes, contains the text. Every name contains the empty one.
    [[nodiscard]] bool matches(std::string_view name);

private:
    NameFolding m_folding;
    std::optional<std::string> m_text;
    std::string m_name;
};
