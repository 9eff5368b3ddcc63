#include "Foundation/NameFolding.h"

namespace {

constexpr QChar capitalDottedI(u'\u0130');
constexpr QChar smallDotlessI(u'\u0131');
constexpr QChar smallSharpS(u'\u00DF');
constexpr QChar capitalSharpS(u'\u1E9E');

}  // namespace

NameFolding::NameFolding(const QLocale& locale)
    : m_turkic(locale.language() == QLocale::Turkish || locale.language() == QLocale::Azerbaijani) {}

void NameFolding::fold(std::string_view name, std::string& folded) const {
    const std::size_t before = folded.size();
    if (!foldLatin(name, folded)) {
        folded.resize(before);
        const QString text = QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size()));
        folded += foldUnicode(text).toStdString();
    }
}

std::optional<std::string> NameFolding::foldText(const QString& text) const {
    if (!text.isValidUtf16() || text.contains(QChar::Null)) {
        return std::nullopt;
    }
    return foldUnicode(text).toStdString();
}

/// The quick path for nearly all names: ASCII, and composed letters of western Europe, which in UTF-8 are two bytes
/// beginning with C2 or C3. False if the name contains anything else.
bool NameFolding::foldLatin(std::string_view name, std::string& folded) const {
    const std::size_t before = folded.size();
    folded += name;
    for (std::size_t i = before; i < folded.size(); ++i) {
        const auto byte = static_cast<unsigned char>(folded[i]);
        if (byte < 0x80) {
            if (byte == 'I' && m_turkic) {
                return false;
            }
            const bool capital = byte >= 'A' && byte <= 'Z';
            folded[i] = static_cast<char>(capital ? byte + ('a' - 'A') : byte);
            continue;
        }
        const auto next = static_cast<unsigned char>(i + 1 < folded.size() ? folded[i + 1] : 0);
        const bool latin = (byte == 0xC3 && next != 0x9F) || (byte == 0xC2 && next != 0xB5);
        if (!latin || (next & 0xC0) != 0x80) {
            return false;
        }
        const bool capital = byte == 0xC3 && next <= 0x9E && next != 0x97;
        folded[++i] = static_cast<char>(capital ? next + 0x20 : next);
    }
    return true;
}

QString NameFolding::foldUnicode(QString text) const {
    text = std::move(text).normalized(QString::NormalizationForm_C);
    if (m_turkic) {
        text.replace(QLatin1Char('I'), smallDotlessI).replace(capitalDottedI, QLatin1Char('i'));
    }
    // Qt folds each letter to one letter, but the sharp s folds to two.
    text.replace(smallSharpS, QLatin1String("ss")).replace(capitalSharpS, QLatin1String("ss"));
    // Case folding can decompose a letter ("İ"), so the text is composed again.
    return text.toCaseFolded().normalized(QString::NormalizationForm_C);
}
