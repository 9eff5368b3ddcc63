#include "Foundation/FileURL.h"

#include <gtest/gtest.h>

#include <tuple>

namespace {

TEST(FileURL, TakesPathsApart) {
    const std::tuple<const char*, const char*, const char*> rows[] = {
        {"/Movies/trip.mov", "trip.mov", "/Movies"},
        {"/trip.mov", "trip.mov", "/"},
        {"/", "/", "/"},
        {"/Movies//", "Movies", "/"},
        {"/a\xFF\n/b", "b", "/a\xFF\n"},
    };
    for (const auto& [path, name, parent] : rows) {
        EXPECT_EQ(FileURL(path).lastPathComponent(), name);
        EXPECT_EQ(FileURL(path).deletingLastPathComponent().path(), parent);
    }
    EXPECT_EQ(FileURL("/").appendingPathComponent("a").path(), "/a");
    EXPECT_EQ(FileURL("/a").appendingPathComponent("b").path(), "/a/b");
}

TEST(DisplayText, ShowsWhatCanBeShownAndNothingThatDeceives) {
    const std::pair<const char*, QString> rows[] = {
        {"a\xFFz", QStringLiteral("a\uFFFDz")},
        {"two\nlines\t", QStringLiteral("two\uFFFDlines\uFFFD")},
        {"cod\xE2\x80\xAEgpj.exe", QStringLiteral("cod\uFFFDgpj.exe")},
        {"🌿ñ.png a & <b>", QStringLiteral("🌿ñ.png a & <b>")},
    };
    for (const auto& [bytes, shown] : rows) {
        EXPECT_EQ(displayText(bytes), shown);
    }
    // The first and the last of each kind that is not shown, and what stands beside them.
    const std::pair<char16_t, char16_t> ranges[] = {{1, 0x1F}, {0x7F, 0x9F}, {0x2028, 0x202E}, {0x2066, 0x2069}};
    for (const auto& [first, last] : ranges) {
        for (char16_t unit = first - 1; unit <= last + 1; ++unit) {
            const bool isShown = unit < first || unit > last;
            const QString text = QString(QChar(unit)) + QLatin1Char('x');
            EXPECT_EQ(unit == 0 || displayText(text.toStdString()) == text, isShown) << int{unit};
        }
    }
}

TEST(ElidedName, KeepsTheEndAndCutsNoCharacterInTwo) {
    const QString dots = QStringLiteral("…");
    const auto times = [](const char* text, int count) { return QString::fromUtf8(text).repeated(count); };
    const std::pair<QString, QString> rows[] = {
        {times("a", 60), times("a", 60)},
        {times("a", 56) + QStringLiteral(".jpeg"), times("a", 29) + dots + times("a", 25) + QStringLiteral(".jpeg")},
        {times("🌿", 40), times("🌿", 14) + dots + times("🌿", 15)},
        {times("e\u0301", 40), times("e\u0301", 14) + dots + times("e\u0301", 15)},
        {QStringLiteral("x") + times("\u0301", 90), dots},
    };
    for (const auto& [name, shown] : rows) {
        EXPECT_EQ(elidedName(name), shown) << qPrintable(name);
    }
}

}  // namespace
