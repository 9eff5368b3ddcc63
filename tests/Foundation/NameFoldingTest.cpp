#include "support/NameMatcher.h"

#include <gtest/gtest.h>

namespace {

TEST(NameMatcher, SearchesAsAPersonWould) {
    struct Row {
        const char* locale;
        const char* name;
        const char* text;
        bool found;
    };
    const Row rows[] = {
        {"es_ES", "img_0001.jpg", "IMG", true},
        {"es_ES", "IMG_0001.JPG", "img_0", true},
        {"es_ES", "Árbol.png", "arbol", false},
        // The letters at the ends of the short way, and two signs that are no pair of letters.
        {"es_ES", "ÀÖØÞ", "àöøþ", true},
        {"es_ES", "þorn", "Þ", true},
        {"es_ES", "3×4", "÷", false},
        {"es_ES", "µ", "Μ", true},
        // The letter followed by its accent, against the composed letter, both ways.
        {"es_ES", "A\xCC\x81rbol.png", "árbol", true},
        {"es_ES", "Árbol.png", "a\u0301rbol", true},
        {"es_ES", "a\u0323\u0307", "\u1EA1\u0307", true},
        {"es_ES", "STRASSE.txt", "straße", true},
        {"es_ES", "ΟΔΟΣ", "οδος", true},
        {"es_ES", "\xE2\x84\xAAilo.txt", "kilo", true},
        {"es_ES", "🌿hoja.txt", "🌿", true},
        {"es_ES", "🌿hoja.txt", "🌱", false},
        {"es_ES", "a\xFFz", "z", true},
        {"es_ES", "dos  blancos", "  ", true},
        {"es_ES", "blanco", "blanco ", false},
        {"es_ES", "anything", "", true},
        {"tr_TR", "TITLE", "tıtle", true},
        {"tr_TR", "TITLE", "title", false},
        {"tr_TR", "İstanbul", "istanbul", true},
        {"tr_TR", "gif", "İ", true},
        {"tr_TR", "I\u0307stanbul", "istanbul", true},
    };
    for (const Row& row : rows) {
        const NameFolding folding{QLocale(QLatin1String(row.locale))};
        NameMatcher matcher(folding, QString::fromUtf8(row.text));
        EXPECT_EQ(matcher.matches(row.name), row.found) << row.locale << ' ' << row.name << ' ' << row.text;
        if (folding.foldsToLowerCase(row.name)) {
            std::string folded;
            folding.fold(row.name, folded);
            EXPECT_EQ(folded, QByteArray(row.name).toLower().toStdString()) << row.locale;
        }
    }
    const NameFolding folding(QLocale(QStringLiteral("es_ES")));
    EXPECT_FALSE(NameMatcher(folding, QString(10'000, QLatin1Char('a'))).matches("aaaa"));
    EXPECT_TRUE(NameMatcher(folding, QString(200, u'Ñ')).matches(QString(200, u'ñ').toStdString()));
}

}  // namespace
