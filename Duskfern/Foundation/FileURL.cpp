#include "Foundation/FileURL.h"

#include <QtCore/QTextBoundaryFinder>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <utility>

FileURL::FileURL(std::string path) : m_path(std::move(path)) {
    while (m_path.size() > 1 && m_path.back() == '/') {
        m_path.pop_back();
    }
}

std::string_view FileURL::lastPathComponent() const {
    if (m_path.size() == 1) {
        return m_path;
    }
    return std::string_view(m_path).substr(m_path.rfind('/') + 1);
}

FileURL FileURL::deletingLastPathComponent() const {
    return FileURL(m_path.substr(0, std::max<size_t>(1, m_path.rfind('/'))));
}

FileURL FileURL::appendingPathComponent(std::string_view name) const {
    std::string path = m_path;
    if (path.back() != '/') {
        path += '/';
    }
    return FileURL(path.append(name));
}

std::optional<std::string> realPath(const FileURL& url) {
    const std::unique_ptr<char, decltype(&std::free)> path(realpath(url.path().c_str(), nullptr), &std::free);
    return path ? std::optional<std::string>(path.get()) : std::nullopt;
}

bool isAtOrBelow(std::string_view path, std::string_view folder) {
    return folder == "/" || (path.starts_with(folder) && (path.size() == folder.size() || path[folder.size()] == '/'));
}

QString displayText(std::string_view bytes) {
    QString text = QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
    for (QChar& character : text) {
        const char16_t unit = character.unicode();
        const bool control = unit < 0x20 || (unit >= 0x7F && unit < 0xA0) || unit == 0x2028 || unit == 0x2029;
        const bool turnsDirection = (unit >= 0x202A && unit <= 0x202E) || (unit >= 0x2066 && unit <= 0x2069);
        if (control || turnsDirection) {
            character = QChar::ReplacementCharacter;
        }
    }
    return text;
}

QString elidedName(const QString& name) {
    constexpr qsizetype longest = 60;
    constexpr qsizetype end = 30;
    if (name.size() <= longest) {
        return name;
    }
    // A character longer than one part (a letter with many combining marks) is dropped as a whole.
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, name);
    const auto boundary = [&finder](qsizetype position, auto step) {
        finder.setPosition(position);
        return finder.isAtBoundary() ? position : (finder.*step)();
    };
    const qsizetype head = boundary(longest - 1 - end, &QTextBoundaryFinder::toPreviousBoundary);
    const qsizetype tail = boundary(name.size() - end, &QTextBoundaryFinder::toNextBoundary);
    return name.left(std::max<qsizetype>(0, head)) + QChar(0x2026) + name.mid(tail < 0 ? name.size() : tail);
}
