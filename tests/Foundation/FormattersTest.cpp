#include "Foundation/Formatters.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

std::string text(const char* locale, std::int64_t bytes) {
    return ByteCountFormatter(QLocale(QLatin1String(locale))).string(bytes).toStdString();
}

TEST(ByteCountFormatter, ChoosesTheUnitFirstAndRoundsToNearest) {
    const std::pair<std::int64_t, const char*> rows[] = {
        {1, "0 KB"},
        {499, "0 KB"},
        {500, "1 KB"},
        {999, "1 KB"},
        {1'000, "1 KB"},
        {1'500, "2 KB"},
        {999'499, "999 KB"},
        {999'999, "1.000 KB"},
        {1'000'000, "1 MB"},
        {1'049'999, "1 MB"},
        {1'500'000, "1,5 MB"},
        {999'960'000, "1.000 MB"},
        {2'000'000'000, "2 GB"},
        {2'050'000'000, "2,05 GB"},
        {2'500'000'000, "2,5 GB"},
        {494'384'795'648, "494,38 GB"},
        {999'999'999'999, "1.000 GB"},
        {1'000'000'000'000, "1 TB"},
        {1'234'567'000'000'000, "1.234,57 TB"},
        {std::numeric_limits<std::int64_t>::max(), "9.223.372,04 TB"},
        {-1'500'000, "-1,5 MB"},
    };
    for (const auto& [bytes, expected] : rows) {
        EXPECT_EQ(text("es_ES", bytes), expected) << bytes;
    }
}

TEST(ByteCountFormatter, SpeaksTheUsersLocale) {
    EXPECT_EQ(text("es_ES", 0), "Cero KB");
    EXPECT_EQ(text("es_MX", 0), "Cero KB");
    EXPECT_EQ(text("en_US", 0), "Zero KB");
    EXPECT_EQ(text("de_DE", 0), "0 KB");
    EXPECT_EQ(text("en_US", 1'234'567'890'000'000), "1,234.57 TB");
    EXPECT_EQ(text("de_CH", 1'234'500'000'000'000), "1’234.5 TB");
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
