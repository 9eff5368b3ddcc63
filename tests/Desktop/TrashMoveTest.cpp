// What lies on the home's file system: one rename, whatever the name and kind.

#include "Desktop/TrashFixture.h"
#include "Trash/TrashNames.h"

#include <sys/stat.h>

#include <tuple>

using namespace trashtest;  // NOLINT(google-build-using-namespace)

TEST_F(TrashTest, KeepsEveryNameAndReplacesNone) {
    const std::vector<std::string> names{"con espacio y acción", "not utf-8 \xff\xfe\xe9.bin", "line\nbreak",
                                         "100%.zip", "%41%2F", "?q#f&;\"'*[", "-rf", " blanks ", "back\\slash", "...",
                                         ".duskfern-0123456789abcdef", "Path=x\n[Trash Info]", "😀 e\u0301",
                                         // Shortened in the Trash only.
                                         std::string(245, 'n'), std::string(246, 'n'), std::string(255, 'n'),
                                         std::string(250, '\xff') + ".jpg", std::string(250, 'x') + "\u00f1o"};
    Origins expected;
    for (const std::string& name : names) {
        for (int i = 0; i < 3; ++i) {
            const fs::path path = make(name, name + std::to_string(i));
            ASSERT_EQ(move(path), std::nullopt) << name;
            EXPECT_FALSE(isThere(path)) << name;
            expected.insert(path);
        }
        EXPECT_TRUE(name.size() > 240 || contentOf(trash / "files" / name) == name + '0') << name;
    }
    EXPECT_EQ(originsIn(trash), expected);
    std::set<std::string> contents;
    for (const fs::path& item : entriesOf(trash / "files")) {
        contents.insert(contentOf(item));
    }
    EXPECT_EQ(contents.size(), expected.size()) << "none replaced another one";
}

TEST(TrashNames, KeepTheExtensionAndWholeCharacters) {
    const std::size_t suffix = trashInfoSuffix.size();
    const std::tuple<const char*, std::optional<std::uint32_t>, std::size_t, const char*> rows[] = {
        {"a.tar.gz", 2, 255, "a.2.tar.gz"},
        {".bashrc", 2, 255, ".bashrc.2"},
        {"v1.2 de la carta que escribí.pdf", 1, 255, "v1.2 de la carta que escribí.1.pdf"},
        {"nandú.txt", {}, suffix + 10, "nandú.txt"},
        {"nandú.txt", {}, suffix + 9, "nand.txt"},
        {"nandú.txt", 12, suffix + 9, "na.12.txt"},
        {"ab.jpeg", 7, suffix + 4, "ab.7"},
        {"ab.jpeg", {}, 1, "a"},
    };
    for (const auto& [name, number, longest, expected] : rows) {
        EXPECT_EQ(nameInTrash(name, number, longest), expected);
    }
    // A character of four bytes, cut anywhere; and bytes that are none.
    for (const std::size_t size : {1U, 2U, 3U, 4U}) {
        EXPECT_EQ(cutName("a\U0001F600b", size), "a");
    }
    EXPECT_EQ(cutName("\x80\x80\x80\x80\x80", 4), "\x80\x80\x80\x80");
}

TEST_F(TrashTest, NotesTheSizesOfFolders) {
    make("año 1/file", std::string(8192, 'x'));
    make("plain");
    fs::create_directories(folder / "sub");
    for (const char* name : {"año 1", "sub", "plain"}) {
        ASSERT_EQ(move(folder / name), std::nullopt);
    }
    struct stat note {};
    ASSERT_EQ(stat((trash / "info/año 1.trashinfo").c_str(), &note), 0);
    std::istringstream sizes(contentOf(trash / "directorysizes"));
    long long bytes = 0;
    long long seconds = 0;
    std::string name;
    sizes >> bytes >> seconds >> name;
    EXPECT_TRUE(8192 <= bytes && bytes <= 8192 + 4096) << bytes;
    EXPECT_EQ(seconds, note.st_mtim.tv_sec);
    EXPECT_EQ(name, "a%C3%B1o%201");
    sizes >> bytes >> seconds >> name;
    EXPECT_EQ(name, "sub");
    EXPECT_FALSE(sizes >> bytes) << "files have none";
    fs::create_directories(folder / "sub");
    ASSERT_EQ(move(folder / "sub"), std::nullopt);
    EXPECT_EQ(originsIn(trash), (Origins{folder / "año 1", folder / "sub", folder / "sub", folder / "plain"}));
}

TEST_F(TrashTest, MovesALinkItselfAndNotesWhereThingsReallyLay) {
    const fs::path target = make("target");
    for (const char* content : {"target", "nowhere", "."}) {
        const fs::path link = folder / (std::string("link to ") + content);
        fs::create_symlink(content, link);
        EXPECT_EQ(move(link), std::nullopt);
        EXPECT_EQ(fs::read_symlink(trash / "files" / link.filename()), content);
    }
    fs::create_hard_link(target, folder / "again");
    EXPECT_EQ(move(folder / "again"), std::nullopt);
    EXPECT_TRUE(isThere(target));

    make("below/target", "the other");
    fs::create_directory_symlink("folder/below", home / "way");
    // By the letter this is in the home, on the disk where ".." of the link's target is.
    EXPECT_EQ(move(home / "way/../target"), std::nullopt);
    EXPECT_EQ(contentOf(trash / "files/target"), "content");
    EXPECT_EQ(originsIn(trash).count(target), 1U);
}

TEST_F(TrashTest, FindsPathsLongerThanTheKernelTakes) {
    const std::string path = root.deepFolder("home/folder");
    EXPECT_EQ(move(path), std::nullopt);
    EXPECT_EQ(originsIn(trash), Origins{path});
    EXPECT_EQ(move(folder), std::nullopt) << "a folder as deep";
    EXPECT_EQ(mover.refusal(FileURL('/' + std::string(5000, 'x') + "/file")), TrashError::pathTooLong);
}

TEST_F(TrashTest, LeavesOrphansAndLoneNotesAlone) {
    const std::pair<fs::path, const char*> there[] = {
        {trash / "files/a.txt", "orphan"}, {trash / "files/sub", "orphan"}, {trash / "info/b.txt.trashinfo", "lone"}};
    for (const auto& [path, content] : there) {
        write(path, content);
    }
    Origins expected{"broken", "broken", "no item: broken"};
    for (const fs::path& path : {make("a.txt"), make("b.txt"), make("sub/file").parent_path()}) {
        EXPECT_EQ(move(path), std::nullopt);
        expected.insert(path);
    }
    for (const auto& [path, content] : there) {
        EXPECT_EQ(contentOf(path), content) << path;
    }
    EXPECT_EQ(originsIn(trash), expected);
}

TEST_F(TrashTest, LeavesNoHalfWrittenNote) {
    const fs::path path = make("file");
    EXPECT_TRUE(moveWithShortWrites(path));
    EXPECT_EQ(contentOf(path), "content");
    EXPECT_EQ(originsIn(trash), Origins());
}

TEST_F(TrashTest, MovesOwnFoldersThatAreClosed) {
    for (const mode_t mode : {0555U, 0000U, 0111U}) {
        const fs::path closed = make(std::to_string(mode) + "/inner/file").parent_path().parent_path();
        chmod((closed / "inner").c_str(), 0);
        chmod(closed.c_str(), mode);
        EXPECT_EQ(move(closed), std::nullopt) << std::oct << mode;
        EXPECT_EQ(modeOf(trash / "files" / closed.filename()), mode) << "as it was";
    }
}

TEST_F(TrashTest, ClearsAwayWhatAKilledMoveLeft) {
    ASSERT_EQ(move(make("first")), std::nullopt);
    const fs::path stale = trash / ".duskfern-0123456789abcdef";
    write(stale / "item/closed/file", "half");
    chmod((stale / "item/closed").c_str(), 0);
    fs::create_directories(trash / ".duskfern-mine");
    ASSERT_EQ(move(make("second")), std::nullopt);
    EXPECT_TRUE(isThere(stale)) << "once in a program's life is enough";
    const FileURL url(make("third").string());
    ASSERT_EQ(nextMover().move(url, fileStatus(url)->identity), std::nullopt);
    EXPECT_FALSE(isThere(stale));
    EXPECT_TRUE(isThere(trash / ".duskfern-mine")) << "not one of ours";
}
