#include "Foundation/FileURL.h"

#include <gtest/gtest.h>

namespace {

TEST(FileURL, TakesPathsApart) {
    struct Row {
        const char* path;
        const char* name;
        const char* parent;
    };
    const Row rows[] = {
        {"/Movies/trip.mov", "trip.mov", "/Movies"},
        {"/trip.mov", "trip.mov", "/"},
        {"/", "/", "/"},
        {"/Movies//", "Movies", "/"},
        {"/a\xFF\n/b", "b", "/a\xFF\n"},
    };
    for (const Row& row : rows) {
        const FileURL url(row.path);
        EXPECT_EQ(url.lastPathComponent(), row.name);
        EXPECT_EQ(url.deletingLastPathComponent().path(), row.parent);
    }
    EXPECT_EQ(FileURL("/").appendingPathComponent("a").path(), "/a");
    EXPECT_EQ(FileURL("/a").appendingPathComponent("b").path(), "/a/b");
}

TEST(DisplayText, ShowsWhatCanBeShownAndNothingThatDeceives) {
    const std::pair<const char*, QString> rows[] = {
        {"año.txt", QStringLiteral("año.txt")},
        {"a\xFFz", QStringLiteral("a\uFFFDz")},
        {"two\nlines\t", QStringLiteral("two\uFFFDlines\uFFFD")},
        {"cod\xE2\x80\xAEgpj.exe", QStringLiteral("cod\uFFFDgpj.exe")},
        {"\xE2\x80\x8F\xD7\x90", QStringLiteral("\u200F\u05D0")},
        {"\xF0\x9F\x8C\xBF.png", QStringLiteral("🌿.png")},
        {"a & <b>", QStringLiteral("a & <b>")},
    };
    for (const auto& [bytes, shown] : rows) {
        EXPECT_EQ(displayText(bytes), shown);
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
