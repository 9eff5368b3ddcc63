#include "SpaceScan/FileScanner.h"

#include "Foundation/Threads.h"
#include "SpaceScan/FilteredFiles.h"
#include "support/FuseDisk.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <set>

namespace {

using Operation = FuseDisk::Operation;
using Paths = std::set<std::string>;

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
    void files(const Paths& paths) const {
        for (const std::string& path : paths) {
            tree.text("disk/" + path, path);
        }
    }

    [[nodiscard]] ScanResult scan() const {
        return FileScanner::scan(tree.url("disk"), [](std::int64_t) {});
    }

    void expect(const Paths& found, std::int64_t skipped, const std::string& where = {}) const {
        const ScanResult result = scan();
        EXPECT_EQ(pathsOf(result.files), found) << where;
        EXPECT_EQ(result.skipped, skipped) << where;
    }

    /// Everything found, by its path on the disk; a file found twice is an error.
    [[nodiscard]] Paths pathsOf(const FileList& list) const {
        Paths paths;
        for (const FileItem& item : list) {
            EXPECT_TRUE(paths.insert(item.url.path().substr(disk.path("").size())).second) << item.url.path();
        }
        return paths;
    }

    TemporaryFolder tree;
    FuseDisk disk{tree.path("disk")};
};

TEST_F(OddDisk, NamesOfAnyLength) {
    const std::string start(31, 's');
    const auto repeated = [](int times, const char* text) { return QString::fromUtf8(text).repeated(times); };
    const Paths paths = {
        "carpeta/" + std::string(256, 'a'),
        "carpeta/" + start,
        "carpeta/" + start + std::string(256, 's'),
        "carpeta/" + repeated(255, "€").toStdString(),
        "carpeta/" + repeated(250, "😀").toStdString() + ".mp4",
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
        Paths others = paths;
        others.erase(item.url.path().substr(disk.path("").size()));
        EXPECT_EQ(pathsOf(found.removing(item.url)), others);
    }
    const std::pair<QString, std::size_t> searches[] = {
        {repeated(256, "A"), 1}, {repeated(257, "A"), 0}, {repeated(31, "s"), 2},  {repeated(32, "s"), 1},
        {repeated(287, "S"), 1}, {repeated(288, "s"), 0}, {repeated(255, "€"), 1}, {repeated(1, "😀.MP4"), 1},
    };
    for (const auto& [text, count] : searches) {
        EXPECT_EQ(FilteredFiles(found, FileCategory::all, text).size(), count) << qPrintable(text);
    }
}

TEST_F(OddDisk, EntriesThatDoNotTellWhatTheyAre) {
    files({"a", "b/c", "b/d/e", "f.app", "b/x.txt", "programa.app/dentro", ".oculta/g"});
    disk.failStatus("b/x.txt", EIO);
    expect({"a", "b/c", "b/d/e", "f.app"}, 1);
    disk.set(FuseDisk::Habit::hideKinds);
    expect({"a", "b/c", "b/d/e", "f.app"}, 1);
    disk.failStatus("b", EACCES);
    expect({"a", "f.app"}, 1);
}

TEST_F(OddDisk, FoldersListedInPieces) {
    Paths paths;
    for (int i = 0; i < 400; ++i) {
        paths.insert("carpeta " + std::to_string(i % 7) + "/" + std::to_string(i));
    }
    files(paths);
    files({"carpeta 3/zzz"});
    tree.text("disk/carpeta 3/.hidden", "zzz\n");
    // In the order in which they were made: the list comes long after what a first read holds.
    for (int i = 0; i < 400; ++i) {
        const std::string name = "llena/" + std::string(250, 'n') + std::to_string(i);
        tree.text("disk/" + name, "");
        paths.insert(name);
    }
    tree.text("disk/llena/.hidden", std::string(250, 'n') + "7\n");
    paths.erase("llena/" + std::string(250, 'n') + "7");
    expect(paths, 0);
    disk.set(FuseDisk::Habit::listFew);
    expect(paths, 0);
}

TEST_F(OddDisk, SizesAndNumbersThatAreNotKept) {
    tree.file("disk/a", 8 * 4096);
    EXPECT_EQ(scan().files.totalSize(), 8 * 4096);
    disk.set(FuseDisk::Habit::changeInodes);
    disk.set(FuseDisk::Habit::forgetBlocks);
    expect({"a"}, 0);
    EXPECT_EQ(scan().files.totalSize(), 0);
}

TEST_F(OddDisk, AScanEndsWithoutWhatDoesNotAnswer) {
    const Paths all = {"a", "b/c", "muerta/d", "muerta/e/f", "z/y", "z/x"};
    files(all);
    struct Row {
        std::string path;
        Operation operation;
        Paths missing;
    };
    const Row rows[] = {
        {"muerta", Operation::any, {"muerta/d", "muerta/e/f"}},
        {"muerta", Operation::list, {"muerta/d", "muerta/e/f"}},
        {"muerta/e", Operation::listRest, {}},
        {"muerta/e", Operation::list, {"muerta/e/f"}},
        {"z/y", Operation::look, {"z/y"}},
        {"", Operation::any, all},
    };
    for (const Row& row : rows) {
        Paths found = all;
        std::erase_if(found, [&](const std::string& path) { return row.missing.contains(path); });
        disk.hang(row.path, row.operation);
        expect(found, 1, row.path);
        disk.release();
    }
    expect(all, 0);
}

}  // namespace
