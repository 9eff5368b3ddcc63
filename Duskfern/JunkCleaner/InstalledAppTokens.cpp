#include "JunkCleaner/InstalledAppTokens.h"

#include "Foundation/FileURL.h"

#include <QtCore/QList>
#include <QtCore/QTextBoundaryFinder>

#include <algorithm>

namespace {

/// A name with no more characters than this is too short to be matched.
constexpr int maximumShortLength = 3;

bool isShort(const QString& token) {
    QTextBoundaryFinder characters(QTextBoundaryFinder::Grapheme, token);
    int count = 0;
    while (count <= maximumShortLength && characters.toNextBoundary() > 0) {
        ++count;
    }
    return count <= maximumShortLength;
}

}  // namespace

QString normalized(const QString& text) {
    const QString lower = text.normalized(QString::NormalizationForm_C).toLower();
    QString kept;
    QTextBoundaryFinder characters(QTextBoundaryFinder::Grapheme, lower);
    for (qsizetype begin = 0, end = 0; (end = characters.toNextBoundary()) > 0; begin = end) {
        const QString character = lower.mid(begin, end - begin);
        if (QChar::isLetterOrNumber(character.toUcs4().first())) {
            kept += character;
        }
    }
    return kept.normalized(QString::NormalizationForm_C);
}

InstalledAppTokens::InstalledAppTokens(const InstalledNames& names) : m_flatpaks(names.identifiers) {
    for (const QString& name : names.bundles) {
        m_parts.push_back(normalized(name));
    }
    for (const QString& name : names.programs) {
        QString token = normalized(name);
        if (!isShort(token)) {
            m_parts.push_back(token);
        }
        m_wholeNames.insert(token);
    }
    for (const QString& word : names.words) {
        m_wholeNames.insert(normalized(word));
    }
    for (const QString& name : names.applications) {
        m_applications.insert(normalized(name));
    }
    std::sort(m_parts.begin(), m_parts.end());
    m_parts.erase(std::unique(m_parts.begin(), m_parts.end()), m_parts.end());
    std::erase_if(m_parts, [](const QString& token) { return token.isEmpty(); });
}

bool InstalledAppTokens::isOrphaned(const QString& name) const {
    const QString token = normalized(name);
    return !isShort(token) && !m_wholeNames.contains(token) &&
           std::none_of(m_parts.begin(), m_parts.end(),
                        [&](const QString& part) { return part.contains(token) || token.contains(part); });
}

bool InstalledAppTokens::isOfApplication(std::string_view name) const {
    constexpr std::string_view settings = ".conf";
    if (!name.ends_with(settings)) {
        return m_applications.contains(normalized(displayText(name)));
    }
    name.remove_suffix(settings.size());
    const QString token = normalized(displayText(name));
    return !isShort(token) && m_wholeNames.contains(token);
}

bool InstalledAppTokens::isOrphanedFlatpak(std::string_view id) const {
    return !isShort(normalized(displayText(id))) && !m_flatpaks.contains(id);
}
