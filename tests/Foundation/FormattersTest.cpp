#include "Foundation/Formatters.h"

#include <gtest/gtest.h>

namespace {

/// Checks what is written as "bytes: text | bytes: text".
void expectTexts(const char* locale, const char* rows) {
    const ByteCountFormatter formatter{QLocale(QLatin1String(locale))};
    for (const QString& row : QString::fromUtf8(rows).split(QStringLiteral(" | "))) {
        const qint64 bytes = row.section(u':', 0, 0).toLongLong();
        EXPECT_EQ(formatter.string(bytes), row.section(u':', 1).mid(1)) << locale << ' ' << bytes;
    }
}

TEST(ByteCountFormatter, ChoosesTheUnitFirstAndRoundsToNearest) {
    expectTexts("es_ES",
                "0: Cero KB | 1: 0 KB | 499: 0 KB | 500: 1 KB | 999: 1 KB | 1000: 1 KB | 1500: 2 KB | 999499: 999 KB | "
                "999999: 1.000 KB | 1000000: 1 MB | 1049999: 1 MB | 1500000: 1,5 MB | 999960000: 1.000 MB | "
                "2000000000: 2 GB | 2050000000: 2,05 GB | 2500000000: 2,5 GB | 494384795648: 494,38 GB | "
                "999999999999: 1.000 GB | 1000000000000: 1 TB | 1234567000000000: 1.234,57 TB | "
                "9223372036854775807: 9.223.372,04 TB | -1500000: -1,5 MB");
    expectTexts("es_MX", "0: Cero KB");
    expectTexts("en_US", "0: Zero KB | 1234567890000000: 1,234.57 TB");
    expectTexts("de_DE", "0: 0 KB");
    expectTexts("de_CH", "1234500000000000: 1’234.5 TB");
}

TEST(ByteCountFormatter, GroupsByThreeFromTheThousandsOn) {
    const ByteCountFormatter spanish{QLocale(QStringLiteral("es_ES"))};
    const std::pair<std::uint64_t, const char*> rows[] = {
        {0, "0"}, {999, "999"}, {1'000, "1.000"}, {1'204, "1.204"}, {12'345, "12.345"}, {1'234'567, "1.234.567"}};
    for (const auto& [number, expected] : rows) {
        EXPECT_EQ(spanish.grouped(number).toStdString(), expected);
    }
    // Digits of two UTF-16 units each.
    const QLocale locale(QLocale::Chakma);
    const ByteCountFormatter chakma(locale);
    EXPECT_EQ(chakma.grouped(1234).count(locale.groupSeparator()), 1);
}

}  // namespace
