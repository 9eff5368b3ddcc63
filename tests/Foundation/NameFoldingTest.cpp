#include "Foundation/NameMatcher.h"

#include <gtest/gtest.h>

namespace {

struct Row {
    const char* locale;
    const char* name;
    QString text;
    bool found;
};

TEST(NameMatcher, SearchesAsAPersonWould) {
    const Row rows[] = {
        {"es_ES", "img_0001.jpg", QStringLiteral("IMG"), true},
        {"es_ES", "IMG_0001.JPG", QStringLiteral("img_0"), true},
        {"es_ES", "Árbol.png", QStringLiteral("árbol"), true},
        {"es_ES", "Árbol.png", QStringLiteral("arbol"), false},
        // The letter followed by its accent, against the composed letter, both ways.
        {"es_ES", "A\xCC\x81rbol.png", QStringLiteral("árbol"), true},
        {"es_ES", "Árbol.png", QStringLiteral("a\u0301rbol"), true},
        {"es_ES", "STRASSE.txt", QStringLiteral("straße"), true},
        {"es_ES", "ΟΔΟΣ", QStringLiteral("οδος"), true},
        {"es_ES", "\xE2\x84\xAAilo.txt", QStringLiteral("kilo"), true},
        {"es_ES", "🌿hoja.txt", QStringLiteral("🌿"), true},
        {"es_ES", "🌿hoja.txt", QStringLiteral("🌱"), false},
        {"es_ES", "a\xFFz", QStringLiteral("z"), true},
        {"es_ES", "dos  blancos", QStringLiteral("  "), true},
        {"es_ES", "blanco", QStringLiteral("blanco "), false},
        {"es_ES", "TITLE", QStringLiteral("title"), true},
        {"tr_TR", "TITLE", QStringLiteral("tıtle"), true},
        {"tr_TR", "TITLE", QStringLiteral("title"), false},
        {"tr_TR", "İstanbul", QStringLiteral("istanbul"), true},
        {"tr_TR", "gif", QStringLiteral("İ"), true},
    };
    for (const Row& row : rows) {
        NameMatcher matcher(NameFolding(QLocale(QLatin1String(row.locale))), row.text);
        EXPECT_EQ(matcher.matches(row.name), row.found) << row.locale << ' ' << row.name << ' ' << qPrintable(row.text);
    }
}

TEST(NameMatcher, TakesLongAndEmptyTexts) {
    const NameFolding folding(QLocale(QStringLiteral("es_ES")));
    EXPECT_TRUE(NameMatcher(folding, QString()).matches("anything"));
    EXPECT_FALSE(NameMatcher(folding, QString(10'000, QLatin1Char('a'))).matches("aaaa"));
    EXPECT_TRUE(NameMatcher(folding, QString(200, u'Ñ')).matches(QString(200, u'ñ').toStdString()));
}

}  // namespace
