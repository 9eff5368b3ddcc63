#include "SpaceScan/ByteMask.h"
#include "SpaceScan/FileScanner.h"
#include "SpaceScan/FilteredFiles.h"
#include "support/NameMatcher.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <numeric>
#include <random>

namespace {

/// What a filter is meant to let pass, one file after the other.
std::vector<std::uint32_t> passing(const FileList& files, FileCategory category, const QString& search) {
    std::vector<std::uint32_t> keys;
    NameMatcher matcher(NameFolding(QLocale()), search);
    for (size_t index = 0; index < files.size(); ++index) {
        const bool ofCategory = category == FileCategory::all || files.categoryAt(index) == category;
        if (ofCategory && matcher.matches(files.nameAt(index))) {
            keys.push_back(files.keyAt(index));
        }
    }
    return keys;
}

std::vector<std::uint32_t> keys(const FilteredFiles& files) {
    std::vector<std::uint32_t> all;
    for (size_t row = 0; row < files.size(); ++row) {
        all.push_back(files.keyAt(row));
    }
    return all;
}

TEST(ByteMask, NeedsNoVectorRegisters) {
    for (unsigned bits = 0; bits < 1U << 16U; ++bits) {
        ByteMask::Lanes lanes{};
        for (unsigned at = 0; at < sizeof lanes; ++at) {
            lanes[at] = (bits >> at & 1U) != 0 ? 0xFF : 0;
        }
        ASSERT_EQ(ByteMask::lowestBits(lanes), bits);
    }
}

TEST(ByteMask, FindsBothOfTwoBytes) {
    std::string bytes(ByteMask::stepSize + 1, 'a');
    bytes[7] = bytes[20] = '\xFF';
    bytes[8] = 'A';
    bytes[21] = 'b';
    EXPECT_EQ(ByteMask::Common::ofBoth({'\xFF'}, bytes.data(), {'a', 'a' - 'A'}, bytes.data() + 1), 1U << 7U);
}

TEST(NumberedNames, FindTheSameOnEveryProcessor) {
    std::mt19937 random(7);
    NumberedNames names;
    for (int count = 0; count < 20'000; ++count) {
        std::string name;
        for (auto left = 1 + random() % (count % 50 == 0 ? 200 : 30); left > 0; --left) {
            name += "aAbB1-\xC3\xB1"[random() % 8];
        }
        names.append(name + (count % 50 == 0 ? "aAabbBb1-1" : ""));
    }
    for (const char* text : {"a", "ab", "b1-", "\xC3\xB1", "aaaa", "1", "1-1", "abab1", "aaabbbb1-1"}) {
        for (std::size_t block = 0; block < names.blockCount(); ++block) {
            BitSet here(names.size() + 5);
            BitSet everywhere(names.size() + 5);
            names.search(block, text, 5, here);
            names.searchPlainly(block, text, 5, everywhere);
            EXPECT_GT(here.count(), 0) << text;
            EXPECT_EQ(here.count(), everywhere.count()) << text;
            here.subtract(everywhere);
            EXPECT_EQ(here.count(), 0) << text;
        }
    }
}

TEST(SearchIndex, FindsNamesOverManyBlocks) {
    std::mt19937 random(5);
    std::vector<std::string> names;
    SearchIndex index;
    for (const int count : {90'000, 0, 1, 70'000}) {
        SearchableNames part;
        for (std::uint32_t number = 0; number < static_cast<std::uint32_t>(count); ++number) {
            std::string name = std::to_string(random() % 100'000) + std::string(random() % 40, "aB"[random() % 2]);
            part.names.append(name);
            if (number % 5 == 0) {
                // As if its folded form differed by more than the case of its letters.
                name += "ß";
                part.addFolded(name, number);
            }
            names.push_back(std::move(name));
        }
        index.add(std::move(part));
    }
    for (const char* text : {"a", "ab", "7", "77777", "12345", "999", "bbbbbbbbbb", "0a", "0ß", "nothing", "aaaaaaaa",
                             "aaaaaaaaa", "4aaaaaaaaaaaaaaa", ""}) {
        std::vector<std::uint32_t> found;
        index.search(text).forEach([&](std::uint32_t number) { found.push_back(number); });
        std::vector<std::uint32_t> expected;
        for (std::uint32_t number = 0; number < names.size(); ++number) {
            std::string lower = names[number];
            std::replace(lower.begin(), lower.end(), 'B', 'b');
            if (lower.find(text) != std::string::npos) {
                expected.push_back(number);
            }
        }
        EXPECT_TRUE(found == expected) << text << ' ' << found.size() << " instead of " << expected.size();
    }
    for (std::uint32_t number = 0; number < names.size(); ++number) {
        ASSERT_TRUE(names[number].starts_with(index.nameOf(number))) << number;
    }
}

class Search : public testing::Test {
protected:
    /// Few letters, so that the names have much in common; some of them long, some beyond Latin, some no text at all.
    std::string name(int number) {
        static const char* const pieces[] = {"a", "b", "A", "é",  "E\xCC\x81", "ß", "SS",
                                             "İ", "Ω", "ω", "名", "\xFF",      " ", "-"};
        std::string text;
        for (unsigned i = 0; i < random() % (number % 50 == 0 ? 60 : 6); ++i) {
            text += pieces[random() % std::size(pieces)];
        }
        return text + std::to_string(number % 40 == 0 ? 0 : number) + (number % 3 == 0 ? ".pdf" : "");
    }

    void SetUp() override {
        for (int i = 0; i < 1500; ++i) {
            tree.text("folder" + std::to_string(i % 50) + "/x" + name(i), std::string(random() % 9000, 'x'));
        }
        files = FileScanner::scan(tree.url(), [](std::int64_t) {}).files;
    }

    TemporaryFolder tree;
    std::mt19937 random{3};
    FileList files;
};

TEST_F(Search, EqualsLookingAtEachName) {
    std::vector<QString> texts{QStringLiteral("é"),      QStringLiteral("e\u0301"), QStringLiteral("ss"),
                               QStringLiteral("ẞ"),      QStringLiteral("ω"),       QStringLiteral("名"),
                               QStringLiteral("\uFFFD"), QStringLiteral(" "),       QStringLiteral("i̇"),
                               QStringLiteral("zz"),     QString(800, u'a'),        QString(QChar(0xD800)),
                               QString(QChar(0)),        QStringLiteral("\u0301")};
    const QString letters = QStringLiteral("abAE-0123.pdf");
    for (int i = 0; i < 300; ++i) {
        QString text;
        for (unsigned length = 0; length < 1 + random() % 4; ++length) {
            text += letters[static_cast<qsizetype>(random() % static_cast<unsigned>(letters.size()))];
        }
        texts.push_back(text);
    }
    for (const QString& text : texts) {
        for (const FileCategory category : {FileCategory::all, FileCategory::documents}) {
            ASSERT_EQ(keys(FilteredFiles(files, category, text)), passing(files, category, text)) << qPrintable(text);
        }
    }
    EXPECT_EQ(FilteredFiles(files, FileCategory::all, {}).size(), files.size());
}

TEST_F(Search, TypingOnAndTakingBackFindsTheSame) {
    FilteredFiles shown;
    const QString typed = QStringLiteral("e\u0301a1-2");
    for (int round = 0; round < 200; ++round) {
        const QString text = typed.left(static_cast<qsizetype>(random() % 7));
        const auto category = random() % 3 == 0 ? FileCategory::documents : FileCategory::all;
        if (round % 20 == 19) {
            files = files.removing(files.urlAt(random() % files.size()));
        }
        shown = FilteredFiles(files, category, text, &shown);
        ASSERT_EQ(keys(shown), passing(files, category, text)) << round << ' ' << qPrintable(text);
    }
}

}  // namespace
