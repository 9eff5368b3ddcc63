#include "Foundation/TypeAhead.h"

#include "Foundation/NameFolding.h"

#include <algorithm>

namespace {

constexpr qint64 longestPause = 1000;  // Milliseconds.

int findPrefix(const QString& prefix, int first, int count, const TypeAhead::NameAt& nameAt) {
    const NameFolding folding{QLocale()};
    const std::optional<std::string> wanted = folding.foldText(prefix);
    std::string name;
    for (int step = 0; wanted && step < count; ++step) {
        const int row = (first + step) % count;
        name.clear();
        folding.fold(nameAt(row), name);
        if (name.starts_with(*wanted)) {
            return row;
        }
    }
    return -1;
}

}  // namespace

std::optional<int> TypeAhead::type(const QString& text, int current, int count, const NameAt& nameAt) {
    if (text.isEmpty() || !text.at(0).isPrint()) {
        return std::nullopt;
    }
    if (!m_since.isValid() || m_since.elapsed() > longestPause) {
        m_typed.clear();
    }
    if (m_typed.isEmpty() && text.at(0).isSpace()) {
        return std::nullopt;
    }
    m_since.start();
    const bool isRepeated = !m_typed.isEmpty() && m_typed == QString(m_typed.size(), text.at(0));
    m_typed += text;
    const int row = findPrefix(m_typed, std::max(0, current + (m_typed.size() == 1 ? 1 : 0)), count, nameAt);
    return row < 0 && isRepeated ? findPrefix(text, current + 1, count, nameAt) : row;
}
