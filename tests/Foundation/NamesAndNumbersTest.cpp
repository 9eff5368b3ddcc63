#include "Foundation/FileURL.h"
#include "Foundation/Formatters.h"
#include "support/NameMatcher.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <tuple>

namespace {

TEST(FileURL, TakesPathsApart) {
    const std::tuple<const char*, const char*, const char*> rows[] = {
        {"/", "/", "/"},
        {"/Movies//", "Movies", "/"},
        {"/a\xFF\n/b", "b", "/a\xFF\n"},
    };
    for (const auto& [path, name, parent] : rows) {
        EXPECT_EQ(FileURL(path).lastPathComponent(), name);
        EXPECT_EQ(FileURL(path).deletingLastPathComponent().path(), parent);
    }
    EXPECT_EQ(FileURL("/").appendingPathComponent("a").path(), "/a");
}

TEST(DisplayText, ShowsWhatCanBeShownAndNothingThatDeceives) {
    EXPECT_EQ(displayText("a\xFFz"), QStringLiteral("a\uFFFDz"));
    EXPECT_EQ(displayText("🌿ñ.png a & <b>"), QStringLiteral("🌿ñ.png a & <b>"));
    // The first and the last of each kind that is not shown, and what stands beside them.
    const std::pair<int, int> ranges[] = {{0, 0x1F}, {0x7F, 0x9F}, {0x2028, 0x202E}, {0x2066, 0x2069}};
    for (const auto& [first, last] : ranges) {
        for (int unit = std::max(0, first - 1); unit <= last + 1; ++unit) {
            const QString text = QString(QChar(unit)) + QLatin1Char('x');
            EXPECT_EQ(displayText(text.toStdString()) != text, unit >= first && unit <= last) << unit;
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

TEST(ByteCountFormatter, ChoosesTheUnitFirstAndRoundsToNearest) {
    const std::pair<const char*, const char*> locales[] = {
        {"es_ES",
         "0: Cero KB | 1: 0 KB | 499: 0 KB | 500: 1 KB | 999: 1 KB | 1500: 2 KB | 999499: 999 KB | 999999: 1.000 KB | "
         "1000000: 1 MB | 1049999: 1 MB | 1500000: 1,5 MB | 999960000: 1.000 MB | 2000000000: 2 GB | "
         "2050000000: 2,05 GB | 2500000000: 2,5 GB | 999999999999: 1.000 GB | 1000000000000: 1 TB | "
         "1234567000000000: 1.234,57 TB | 9223372036854775807: 9.223.372,04 TB | -1500000: -1,5 MB"},
        {"en_US", "0: Zero KB | 1234567890000000: 1,234.57 TB"},
        {"de_CH", "0: 0 KB | 1234500000000000: 1’234.5 TB"},
    };
    for (const auto& [locale, rows] : locales) {
        const ByteCountFormatter formatter{QLocale(QLatin1String(locale))};
        for (const QString& row : QString::fromUtf8(rows).split(QStringLiteral(" | "))) {
            const QStringList columns = row.split(QStringLiteral(": "));
            EXPECT_EQ(formatter.string(columns[0].toLongLong()), columns[1]) << locale << ' ' << qPrintable(row);
        }
    }
    // Digits of two UTF-16 units each.
    const QLocale chakma(QLocale::Chakma);
    EXPECT_EQ(ByteCountFormatter(chakma).grouped(1234).count(chakma.groupSeparator()), 1);
}

TEST(NameMatcher, SearchesAsAPersonWould) {
    using Pairs = std::vector<std::pair<const char*, const char*>>;
    const std::tuple<const char*, bool, Pairs> groups[] = {
        {"es_ES", true, {{"IMG_0001.JPG", "img_0"}, {"blanco", "BLANCO"}, {"a\xFFz", "z"}, {"🌿hoja.txt", "🌿"}}},
        {"es_ES", false, {{"Árbol.png", "arbol"}, {"blanco", "blanco "}, {"🌿hoja.txt", "🌱"}}},
        // The letters at the ends of the short way, and two signs that are no pair of letters.
        {"es_ES", true, {{"ÀÖØÞ", "àöøþ"}, {"þorn", "Þ"}, {"µ", "Μ"}}},
        {"es_ES", false, {{"3×4", "÷"}}},
        // The letter followed by its accent, against the composed letter, both ways.
        {"es_ES", true, {{"A\xCC\x81rbol", "árbol"}, {"Árbol", "a\u0301rbol"}, {"a\u0323\u0307", "\u1EA1\u0307"}}},
        {"es_ES", true, {{"STRASSE.txt", "straße"}, {"ΟΔΟΣ", "οδος"}, {"\xE2\x84\xAAilo.txt", "kilo"}}},
        {"tr_TR", true, {{"TITLE", "tıtle"}, {"İstanbul", "istanbul"}, {"gif", "İ"}, {"I\u0307stanbul", "istanbul"}}},
        {"tr_TR", false, {{"TITLE", "title"}}},
    };
    for (const auto& [locale, isFound, pairs] : groups) {
        const NameFolding folding{QLocale(QLatin1String(locale))};
        for (const auto& [name, text] : pairs) {
            EXPECT_EQ(NameMatcher(folding, QString::fromUtf8(text)).matches(name), isFound) << name << ' ' << text;
            if (folding.foldsToLowerCase(name)) {
                std::string folded;
                folding.fold(name, folded);
                EXPECT_EQ(folded, QByteArray(name).toLower().toStdString()) << locale;
            }
        }
    }
}

}  // namespace
