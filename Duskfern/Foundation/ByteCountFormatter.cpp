#include "Foundation/ByteCountFormatter.h"

#include <array>

namespace {

struct Unit {
    const char* name;
    std::uint64_t bytes;
    int fractionDigits;
};

constexpr std::array<Unit, 4> units{{
    {"TB", 1'000'000'000'000, 2},
    {"GB", 1'000'000'000, 2},
    {"MB", 1'000'000, 1},
    {"KB", 1'000, 0},
}};

const Unit& unitFor(std::uint64_t bytes) {
    for (const Unit& unit : units) {
        if (bytes >= unit.bytes) {
            return unit;
        }
    }
    return units.back();
}

QString zeroWord(const QLocale& locale) {
    switch (locale.language()) {
        case QLocale::Spanish:
            return QStringLiteral("Cero");
        case QLocale::English:
            return QStringLiteral("Zero");
        default:
            return locale.zeroDigit();
    }
}

}  // namespace

ByteCountFormatter::ByteCountFormatter(const QLocale& locale) : m_locale(locale) {
    m_locale.setNumberOptions(QLocale::OmitGroupSeparator);
}

QString ByteCountFormatter::grouped(std::uint64_t number) const {
    QString digits = m_locale.toString(static_cast<qulonglong>(number));
    // A digit of some scripts takes two UTF-16 units.
    const auto unitsPerDigit = m_locale.zeroDigit().size();
    for (qsizetype at = digits.size() - 3 * unitsPerDigit; at > 0; at -= 3 * unitsPerDigit) {
        digits.insert(at, m_locale.groupSeparator());
    }
    return digits;
}

QString ByteCountFormatter::string(std::int64_t bytes) const {
    if (bytes == 0) {
        return zeroWord(m_locale) + QStringLiteral(" KB");
    }
    const std::uint64_t count = magnitude(bytes);
    const Unit& unit = unitFor(count);
    const std::uint64_t scale = unit.fractionDigits == 2 ? 100 : unit.fractionDigits == 1 ? 10 : 1;
    std::uint64_t whole = count / unit.bytes;
    std::uint64_t fraction = (count % unit.bytes * scale + unit.bytes / 2) / unit.bytes;
    if (fraction == scale) {
        ++whole;
        fraction = 0;
    }
    QString text = bytes < 0 ? m_locale.negativeSign() : QString();
    text += grouped(whole);
    if (fraction > 0) {
        int digits = unit.fractionDigits;
        for (; fraction % 10 == 0; fraction /= 10) {
            --digits;
        }
        const QString shown = m_locale.toString(static_cast<qulonglong>(fraction));
        text += m_locale.decimalPoint();
        text += m_locale.zeroDigit().repeated(digits - shown.size() / m_locale.zeroDigit().size());
        text += shown;
    }
    return text + QLatin1Char(' ') + QLatin1String(unit.name);
}
