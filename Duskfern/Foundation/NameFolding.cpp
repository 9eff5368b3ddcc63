#include "Foundation/NameFolding.h"

#include <algorithm>

namespace {

constexpr QChar capitalDottedI(u'\u0130');
constexpr QChar smallDotlessI(u'\u0131');
constexpr QChar smallSharpS(u'\u00DF');
constexpr QChar capitalSharpS(u'\u1E9E');

bool isASCII(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

char lowerASCII(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

}  // namespace

NameFolding::NameFolding(const QLocale& locale)
    : m_turkic(locale.language() == QLocale::Turkish || locale.language() == QLocale::Azerbaijani) {}

QString NameFolding::fold(QString text) const {
    text = std::move(text).normalized(QString::NormalizationForm_C);
    if (m_turkic) {
        text.replace(QLatin1Char('I'), smallDotlessI).replace(capitalDottedI, QLatin1Char('i'));
    }
    // Qt folds letter by letter, and the sharp s is two letters in capitals.
    text.replace(smallSharpS, QLatin1String("ss")).replace(capitalSharpS, QLatin1String("ss"));
    // Folding can take a composed letter apart ("İ"), so the text is composed again.
    return text.toCaseFolded().normalized(QString::NormalizationForm_C);
}

NameMatcher::NameMatcher(const NameFolding& folding, const QString& text)
    : m_folding(folding), m_text(folding.fold(text)), m_ascii(m_text.toStdString()), m_isASCII(isASCII(m_ascii)) {}

bool NameMatcher::matches(std::string_view name) const {
    const bool plain = isASCII(name) && !(m_folding.m_turkic && name.find('I') != std::string_view::npos);
    if (plain) {
        const auto same = [](char inName, char inText) { return lowerASCII(inName) == inText; };
        return m_isASCII && std::search(name.begin(), name.end(), m_ascii.begin(), m_ascii.end(), same) != name.end();
    }
    return m_folding.fold(QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size()))).contains(m_text);
}
