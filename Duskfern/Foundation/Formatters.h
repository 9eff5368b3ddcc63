#pragma once

#include <QtCore/QLocale>
#include <QtCore/QString>

#include <cstdint>

/// Turns byte counts into text: decimal multiples (1 KB is 1,000 bytes) in KB, MB, GB or TB, the largest that the count
/// reaches, with at most 0, 1, 2 and 2 fraction digits, rounded to nearest.
class ByteCountFormatter {
public:
    explicit ByteCountFormatter(const QLocale& locale);

    [[nodiscard]] QString string(std::int64_t bytes) const;

    /// A whole number, its digits grouped by three from the thousands on. QLocale leaves four digits ungrouped in
    /// some locales, Spanish among them.
    [[nodiscard]] QString grouped(std::uint64_t number) const;

private:
    QLocale m_locale;
};

/// The one way every screen turns a number into text.
namespace Formatters {

/// The formatter of the user's locale, made on first use; any thread.
[[nodiscard]] const ByteCountFormatter& bytes();

/// A byte count as "1,5 MB".
[[nodiscard]] QString size(std::int64_t count);

/// A count of things as "1.204".
[[nodiscard]] QString grouped(std::int64_t number);

}  // namespace Formatters
