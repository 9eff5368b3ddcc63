#include "SpaceScan/FileScanner.h"

#include "Foundation/Threads.h"
#include "SpaceScan/FilteredFiles.h"
#include "support/FuseDisk.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <map>
#include <set>

namespace {

using Operation = FuseDisk::Operation;

class OddDisk : public testing::Test {
protected:
    void SetUp() override {
        if (!disk.isMounted()) {
            GTEST_SKIP() << FuseDisk::whyNot;
        }
    }

    void TearDown() override {
        if (disk.isMounted()) {
            disk.release();
            EXPECT_TRUE(Threads::waitForAll(std::chrono::seconds(20)));
        }
    }

    /// Makes files on the disk.
    void files(const std::set<std::string>& paths) const {
        for (const std::string& path : paths) {
            tree.text("disk/" + path, path);
        }
    }

    [[nodiscard]] ScanResult scan() const {
        return FileScanner::scan(tree.url("disk"), [](std::int64_t) {});
    }

    /// Everything found, by its path on the disk; a file found twice is an error.
    [[nodiscard]] std::set<std::string> pathsOf(const FileList& list) const {
        std::set<std::string> paths;
        for (const FileItem& item : list) {
            EXPECT_TRUE(paths.insert(item.url.path().substr(disk.path("").size())).second) << item.url.path();
        }
        return paths;
    }

    TemporaryFolder tree;
    FuseDisk disk{tree.path("disk")};
};

std::string repeated(int times, const std::string& text) {
    std::string result;
    for (int i = 0; i < times; ++i) {
        result += text;
    }
    return result;
}

TEST_F(OddDisk, NamesOfAnyLength) {
    const std::string start(31, 's');
    const std::set<std::string> paths = {
        "carpeta/" + std::string(256, 'a'),
        "carpeta/" + start,
        "carpeta/" + start + std::string(256, 's'),
        "carpeta/" + repeated(255, "€"),
        "carpeta/" + repeated(250, "😀") + ".mp4",
        std::string(511, 'd') + "/" + std::string(512, 'e') + "/x",
        std::string(256, 'a') + "/y",
    };
    files(paths);
    const FileList found = scan().files;
    EXPECT_EQ(pathsOf(found), paths);
    for (const FileItem& item : found) {
        const std::optional<std::size_t> index = found.indexOf(item.url);
        ASSERT_TRUE(index) << item.url.path();
        EXPECT_EQ(found[*index], item);
        EXPECT_EQ(item.name(), displayText(item.url.lastPathComponent()));
        std::set<std::string> others = pathsOf(found);
        others.erase(item.url.path().substr(disk.path("").size()));
        EXPECT_EQ(pathsOf(found.removing(item.url)), others);
    }
    const std::pair<QString, std::size_t> searches[] = {
        {QString(256, QLatin1Char('A')), 1}, {QString(257, QLatin1Char('A')), 0}, {QString(31, QLatin1Char('s')), 2},
        {QString(32, QLatin1Char('s')), 1},  {QString(287, QLatin1Char('S')), 1}, {QString(288, QLatin1Char('s')), 0},
        {QString(255, QChar(0x20AC)), 1},    {QStringLiteral("😀.MP4"), 1},        {QString(31, QLatin1Char('a')), 1},
    };
    for (const auto& [text, count] : searches) {
        EXPECT_EQ(FilteredFiles(found, FileCategory::all, text).size(), count) << qPrintable(text);
    }
    EXPECT_EQ(FilteredFiles(found, FileCategory::videos, {}).size(), 1U);
}

TEST_F(OddDisk, EntriesOfUnknownKind) {
    const std::set<std::string> paths = {"a", "b/c", "b/d/e", "f.app", "b/x.txt"};
    files(paths);
    files({"programa.app/dentro", ".oculta/g"});
    disk.hideKinds();
    disk.failStatus("b/x.txt", EIO);
    ScanResult result = scan();
    EXPECT_EQ(pathsOf(result.files), (std::set<std::string>{"a", "b/c", "b/d/e", "f.app"}));
    EXPECT_EQ(result.skipped, 1);
    disk.failStatus("b", EACCES);
    result = scan();
    EXPECT_EQ(pathsOf(result.files), (std::set<std::string>{"a", "f.app"}));
    EXPECT_EQ(result.skipped, 1);
}

TEST_F(OddDisk, StatusesThatCannotBeRead) {
    files({"a", "b", "c/d", "c/e"});
    disk.failStatus("a", EIO);
    disk.failStatus("c/e", EACCES);
    const ScanResult result = scan();
    EXPECT_EQ(pathsOf(result.files), (std::set<std::string>{"b", "c/d"}));
    EXPECT_EQ(result.skipped, 2);
}

TEST_F(OddDisk, FoldersListedInPieces) {
    std::set<std::string> paths;
    for (int i = 0; i < 400; ++i) {
        paths.insert("carpeta " + std::to_string(i % 7) + "/" + std::to_string(i));
    }
    files(paths);
    files({"carpeta 3/zzz"});
    tree.text("disk/carpeta 3/.hidden", "zzz\n");
    disk.listFew();
    const ScanResult result = scan();
    EXPECT_EQ(pathsOf(result.files), paths);
    EXPECT_EQ(result.skipped, 0);
}

TEST_F(OddDisk, SizesAndNumbersThatAreNotKept) {
    tree.file("disk/a", 8 * 4096);
    EXPECT_EQ(scan().files.totalSize(), 8 * 4096);
    disk.changeInodes();
    disk.forgetBlocks();
    const FileList found = scan().files;
    EXPECT_EQ(pathsOf(found), std::set<std::string>{"a"});
    EXPECT_EQ(found.totalSize(), 0);
}

/// What does not answer, and what a scan still finds.
TEST_F(OddDisk, AScanEndsWithoutWhatDoesNotAnswer) {
    files({"a", "b/c", "muerta/d", "muerta/e/f", "z/y", "z/x"});
    struct Row {
        std::string path;
        Operation operation;
        std::set<std::string> found;
    };
    const Row rows[] = {
        {"muerta", Operation::any, {"a", "b/c", "z/y", "z/x"}},
        {"muerta", Operation::list, {"a", "b/c", "z/y", "z/x"}},
        {"muerta/e", Operation::listRest, {"a", "b/c", "muerta/d", "muerta/e/f", "z/y", "z/x"}},
        {"muerta/e", Operation::list, {"a", "b/c", "muerta/d", "z/y", "z/x"}},
        {"z/y", Operation::look, {"a", "b/c", "muerta/d", "muerta/e/f", "z/x"}},
    };
    for (const Row& row : rows) {
        disk.hang(row.path, row.operation);
        const ScanResult result = scan();
        EXPECT_EQ(pathsOf(result.files), row.found) << row.path;
        EXPECT_EQ(result.skipped, 1) << row.path;
        disk.release();
    }
    EXPECT_EQ(scan().files.size(), 6U);

    disk.hang("");
    const ScanResult nothing = scan();
    EXPECT_TRUE(nothing.files.isEmpty());
    EXPECT_EQ(nothing.skipped, 1);
}

}  // namespace
