#include "SpaceScan/ByteMask.h"
#include "SpaceScan/FileScanner.h"
#include "SpaceScan/FilteredFiles.h"
#include "support/NameMatcher.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <random>

namespace {

using Numbers = std::vector<std::uint32_t>;

Numbers numbersIn(const BitSet& set) {
    Numbers numbers;
    set.forEach([&](std::uint32_t number) { numbers.push_back(number); });
    return numbers;
}

TEST(ByteMask, NeedsNoVectorRegisters) {
    ByteMask::Lanes lanes{};
    for (unsigned at = 0; at < sizeof lanes; ++at) {
        lanes[at] = 0xFF;
        EXPECT_EQ(ByteMask::lowestBits(lanes), (2U << at) - 1);
    }
}

/// What a search finds with the instructions of this processor is to be what it finds with those of every one.
void expectSameOnEveryProcessor(const NumberedNames& names, const char* text) {
    BitSet here(names.size());
    BitSet everywhere(names.size());
    for (std::size_t block = 0; block < names.blockCount(); ++block) {
        names.search(block, text, 0, here);
        names.searchPlainly(block, text, 0, everywhere);
    }
    EXPECT_EQ(numbersIn(here), numbersIn(everywhere)) << text;
}

TEST(SearchIndex, FindsNamesOverManyBlocks) {
    const char* const texts[] = {"a",  "ab", "7", "77777",   "12345",    "999",       "bbbbbbbbbb",
                                 "0a", "0ß", "ß", "nothing", "aaaaaaaa", "aaaaaaaaa", "4aaaaaaaaaaaaaaa"};
    std::mt19937 random(5);
    std::vector<std::string> names;
    SearchIndex index;
    for (const std::uint32_t count : {90'000U, 0U, 1U, 70'000U}) {
        SearchableNames part;
        for (std::uint32_t number = 0; number < count; ++number) {
            std::string name = std::to_string(random() % 100'000);
            for (auto left = random() % (number % 50 == 0 ? 400 : 40); left > 0; --left) {
                name += "aaaaaBbb"[random() % 8];
            }
            part.names.append(name);
            if (number % 5 == 0) {
                // As if its folded form differed by more than the case of its letters.
                name += "ß";
                part.addFolded(name, number);
            }
            names.push_back(std::move(name));
        }
        for (const char* const text : texts) {
            expectSameOnEveryProcessor(part.names, text);
            expectSameOnEveryProcessor(part.folded, text);
        }
        index.add(std::move(part));
    }
    for (const char* const text : texts) {
        Numbers expected;
        for (std::uint32_t number = 0; number < names.size(); ++number) {
            if (QByteArray::fromStdString(names[number]).toLower().contains(text)) {
                expected.push_back(number);
            }
        }
        const Numbers found = numbersIn(index.search(text));
        EXPECT_TRUE(found == expected) << text << ' ' << found.size() << " instead of " << expected.size();
    }
    EXPECT_EQ(index.search("").count(), names.size());
    for (std::uint32_t number = 0; number < names.size(); ++number) {
        ASSERT_TRUE(names[number].starts_with(index.nameOf(number))) << number;
    }
}

/// What a filter is meant to let pass, one file after the other.
Numbers passing(const FileList& files, FileCategory category, const QString& search) {
    Numbers keys;
    NameMatcher matcher(NameFolding(QLocale()), search);
    for (std::size_t index = 0; index < files.size(); ++index) {
        const bool ofCategory = category == FileCategory::all || files.categoryAt(index) == category;
        if (ofCategory && matcher.matches(files.nameAt(index))) {
            keys.push_back(files.keyAt(index));
        }
    }
    return keys;
}

Numbers keys(const FilteredFiles& files) {
    Numbers all;
    for (std::size_t row = 0; row < files.size(); ++row) {
        all.push_back(files.keyAt(row));
    }
    return all;
}

TEST(Search, EqualsLookingAtEachName) {
    // Few letters, so that the names have much in common; some of them long, some beyond Latin, some no text at all.
    static const char* const pieces[] = {"a", "b", "A", "é",  "E\xCC\x81", "ß", "SS",
                                         "İ", "Ω", "ω", "名", "\xFF",      " ", "-"};
    std::mt19937 random(3);
    const TemporaryFolder tree;
    for (int i = 0; i < 1500; ++i) {
        std::string name = "folder" + std::to_string(i % 50) + "/x";
        for (auto left = random() % (i % 50 == 0 ? 60 : 6); left > 0; --left) {
            name += pieces[random() % std::size(pieces)];
        }
        name += std::to_string(i % 40 == 0 ? 0 : i) + (i % 3 == 0 ? ".pdf" : "");
        tree.text(name, std::string(random() % 9000, 'x'));
    }
    FileList files = FileScanner::scan(tree.url(), [](std::int64_t) {}).files;

    // Each text is also filtered from what the one before it left: typed on, even by an accent, and taken back.
    std::vector<QString> texts;
    for (const char* const text : {"e", "e\u0301", "e\u0301a", "e\u0301", "é", "s", "ss", "ẞ", "ω", "名", "\uFFFD", " ",
                                   "i̇", "zz", "\u0301", ""}) {
        texts.push_back(QString::fromUtf8(text));
    }
    texts.insert(texts.end(), {QString(800, u'a'), QString(QChar(0xD800)), QString(QChar(0))});
    for (int i = 0; i < 150; ++i) {
        QString text;
        for (auto left = 1 + random() % 4; left > 0; --left) {
            texts.push_back(text += QLatin1Char("abAE-0123.pdf"[random() % 13]));
        }
    }
    FilteredFiles shown;
    for (const QString& text : texts) {
        for (const FileCategory category : {FileCategory::all, FileCategory::documents}) {
            shown = FilteredFiles(files, category, text, &shown);
            ASSERT_EQ(keys(shown), passing(files, category, text)) << qPrintable(text);
            if (random() % 20 == 0) {
                files = files.removing(files.urlAt(random() % files.size()));
            }
        }
    }
}

}  // namespace
