#include "Foundation/Threads.h"
#include "SpaceScan/ScanFixture.h"
#include "support/FuseDisk.h"

#include <algorithm>
#include <cerrno>
#include <tuple>

namespace {

using Operation = FuseDisk::Operation;

class OddDisk : public ScanFixture {
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

    FuseDisk disk{tree.path()};
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
    expect(paths, 0);
    const FileList found = scan().files;
    const auto countOf = [&](const QString& text) { return FilteredFiles(found, FileCategory::all, text).size(); };
    for (std::size_t index = 0; index < found.size(); ++index) {
        const QString name = found[index].name();
        EXPECT_EQ(found.indexOf(found.urlAt(index)), index) << qPrintable(name);
        EXPECT_GE(countOf(name.toUpper()), 1U) << qPrintable(name);
        EXPECT_EQ(countOf(name + u'x'), 0U) << qPrintable(name);
    }
    EXPECT_EQ(countOf(repeated(31, "s")), 2U);
}

TEST_F(OddDisk, EntriesThatDoNotTellWhatTheyAre) {
    files({"a", "b/c", "b/d/e", "f.app", "b/x.txt", "programa.app/dentro", ".oculta/g", "roto/y"});
    tree.link("roto/enlace", "y");
    disk.failStatus("b/x.txt", EIO);
    disk.failStatus("roto/y", EIO);
    expect({"a", "b/c", "b/d/e", "f.app"}, 2, "the link beside it can be examined");
    for (const auto habit :
         {FuseDisk::Habit::hideKinds, FuseDisk::Habit::changeInodes, FuseDisk::Habit::forgetBlocks}) {
        disk.set(habit);
    }
    expect({"a", "b/c", "b/d/e", "f.app"}, 2);
    EXPECT_EQ(scan().files.totalSize(), 0);
    disk.failStatus("b", EACCES);
    expect({"a", "f.app"}, 2);
}

TEST_F(OddDisk, FoldersListedInPieces) {
    const std::string crowded = "llena/" + std::string(250, 'n');
    Paths paths;
    for (int i = 0; i < 400; ++i) {
        paths.insert("carpeta/" + std::to_string(i));
        paths.insert(crowded + std::to_string(i));
    }
    files(paths);
    // Listed in the order in which they were made: the lists come last, and one of them behind what a first read holds.
    tree.text("carpeta/.hidden", "7\n");
    tree.text("llena/.hidden", std::string(250, 'n') + "7\n");
    paths.erase("carpeta/7");
    paths.erase(crowded + "7");
    expect(paths, 0);
    disk.set(FuseDisk::Habit::listFew);
    expect(paths, 0);
}

TEST_F(OddDisk, AScanEndsWithoutWhatDoesNotAnswer) {
    const Paths all = {"a", "b/c", "muerta/d", "muerta/e/f", "z/y", "z/x"};
    files(all);
    const std::tuple<std::string, Operation, Paths> rows[] = {
        {"muerta", Operation::any, {"muerta/d", "muerta/e/f"}},
        {"muerta", Operation::list, {"muerta/d", "muerta/e/f"}},
        {"muerta/e", Operation::listRest, {}},
        {"muerta/e", Operation::list, {"muerta/e/f"}},
        {"z/y", Operation::look, {"z/y"}},
        {"", Operation::any, all},
    };
    for (const auto& [path, operation, missing] : rows) {
        Paths found;
        std::set_difference(all.begin(), all.end(), missing.begin(), missing.end(), std::inserter(found, found.end()));
        disk.hang(path, operation);
        expect(found, 1, path);
        disk.release();
    }
    expect(all, 0);
}

}  // namespace
