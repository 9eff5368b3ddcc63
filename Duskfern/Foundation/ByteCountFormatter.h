#pragma once

#include <QtCore/QLocale>
#include <QtCore/QString>

#include <cstdint>

/// The absolute value; unlike that of std::abs it is defined for every number.
[[nodiscard]] inline std::uint64_t magnitude(std::int64_t number) {
    const auto bits = static_cast<std::uint64_t>(number);
    return number < 0 ? 0 - bits : bits;
}

/// Turns byte counts into text: decimal multiples (1 KB is 1,000 bytes) in KB, MB, GB or TB, the largest that the count
/// reaches, with at most 0, 1, 2 and 2 fraction digits, rounded to nearest.
class ByteCountFormatter {
public:
    explicit ByteCountFormatter(const QLocale& locale);

    [[nodiscard]] QString string(std::int64_t bytes) const;

    /// A whole number with its digits in groups of three, from 1,000 on. QLocale leaves numbers of four digits
    /// ungrouped in some locales, Spanish among them.
    [[nodiscard]] QString grouped(std::uint64_t number) const;

private:
    QLocale m_locale;
};
