// What lies on the home's file system: one rename, whatever the name and kind.

#include "Desktop/TrashFixture.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <array>
#include <fstream>

using namespace trashtest;  // NOLINT(google-build-using-namespace)

TEST_F(TrashTest, KeepsOddNamesToTheByte) {
    const std::array names = {"con espacio y acción",
                              "not utf-8 \xff\xfe\xe9.bin",
                              "line\nbreak",
                              "\"a\" 'b' “c”",
                              "100%.zip",
                              "%41%2F",
                              "?q#f&;",
                              "-rf",
                              " blanks ",
                              "back\\slash",
                              "...",
                              ".hidden",
                              ".duskfern-0123456789abcdef",
                              "*[glob]?",
                              "Path=x\n[Trash Info]",
                              "😀 e\u0301"};
    Origins expected;
    for (const std::string name : names) {
        const FileURL url = make(name, name);
        ASSERT_EQ(move(url), std::nullopt) << name;
        EXPECT_FALSE(isThere(url.path())) << name;
        EXPECT_EQ(contentOf(trash / "files" / name), name);
        expected.insert(url.path());
    }
    EXPECT_EQ(originsIn(trash), expected);
}

TEST_F(TrashTest, MovesWholeFoldersAndSeveralItemsOfOneName) {
    Origins expected;
    for (int i = 0; i < 3; ++i) {
        fs::create_directories(folder / "cache.d" / "inner");
        const FileURL url = make("cache.d");
        const FileURL inside = make("cache.d/inner/file", std::to_string(i));
        ASSERT_EQ(move(url), std::nullopt);
        EXPECT_FALSE(isThere(inside.path()));
        expected.insert(url.path());
    }
    EXPECT_EQ(originsIn(trash), expected);
    EXPECT_EQ(contentOf(trash / "files" / "cache.d" / "inner" / "file"), "0");
}

TEST_F(TrashTest, NotesTheSizesOfFolders) {
    fs::create_directories(folder / "año 1");
    make("año 1/file", std::string(8192, 'x'));
    fs::create_directories(folder / "sub");
    make("plain");
    for (const char* name : {"año 1", "sub", "plain"}) {
        ASSERT_EQ(move(folder / name), std::nullopt);
    }
    struct stat note {};
    ASSERT_EQ(stat((trash / "info" / "año 1.trashinfo").c_str(), &note), 0);
    std::istringstream sizes(contentOf(trash / "directorysizes"));
    long long bytes = 0;
    long long seconds = 0;
    std::string name;
    sizes >> bytes >> seconds >> name;
    EXPECT_GE(bytes, 8192);
    EXPECT_LE(bytes, 8192 + 4096);
    EXPECT_EQ(seconds, note.st_mtim.tv_sec);
    EXPECT_EQ(name, "a%C3%B1o%201");
    sizes >> bytes >> seconds >> name;
    EXPECT_EQ(name, "sub");
    EXPECT_FALSE(sizes >> bytes) << "files have none";
}

TEST_F(TrashTest, MovesALinkItselfAndNotesWhereThingsReallyLay) {
    const FileURL target = make("target");
    for (const char* content : {"target", "nowhere", "."}) {
        const fs::path link = folder / (std::string("link to ") + content);
        fs::create_symlink(content, link);
        EXPECT_EQ(move(link), std::nullopt);
        EXPECT_EQ(fs::read_symlink(trash / "files" / link.filename()), content);
    }
    EXPECT_TRUE(isThere(target.path()));

    fs::create_directories(folder / "below");
    fs::create_directory_symlink("folder/below", home / "way");
    make("below/target", "the other");
    // By the letter this is home/folder..., on the disk what ".." of the link's target is.
    EXPECT_EQ(move(home / "way" / ".." / "target"), std::nullopt);
    EXPECT_EQ(contentOf(trash / "files" / "target"), "content");
    EXPECT_EQ(originsIn(trash).count(target.path()), 1U);
}

TEST_F(TrashTest, TellsHardLinksApart) {
    const FileURL first = make("first");
    const FileURL second(first.deletingLastPathComponent().appendingPathComponent("second"));
    fs::create_hard_link(first.path(), second.path());
    EXPECT_EQ(move(first), std::nullopt);
    EXPECT_TRUE(isThere(second.path()));
    EXPECT_EQ(move(second), std::nullopt);
    EXPECT_EQ(originsIn(trash), (Origins{first.path(), second.path()}));
}

TEST_F(TrashTest, ShortensLongNamesInTheTrashOnly) {
    Origins expected;
    for (const std::string& name : {std::string(245, 'n'), std::string(246, 'n'), std::string(255, 'n'),
                                    std::string(250, '\xff') + ".jpg", std::string(250, 'x') + "\u00f1o"}) {
        for (int i = 0; i < 3; ++i) {
            const FileURL url = make(name, name + std::to_string(i));
            ASSERT_EQ(move(url), std::nullopt) << name.size();
            expected.insert(url.path());
        }
    }
    EXPECT_EQ(originsIn(trash), expected);
    std::set<std::string> contents;
    for (const fs::directory_entry& item : fs::directory_iterator(trash / "files")) {
        contents.insert(contentOf(item.path()));
    }
    EXPECT_EQ(contents.size(), 15U) << "none replaced another one";
}

TEST_F(TrashTest, FindsPathsLongerThanTheKernelTakes) {
    // Folder by folder, as no call takes it as a whole.
    std::string path = folder.string();
    Descriptor below(open(path.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    const std::string name(250, 'd');
    for (int i = 0; i < 20; ++i) {
        ASSERT_EQ(mkdirat(below.number(), name.c_str(), 0755), 0);
        below.reset(openat(below.number(), name.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
        path += '/' + name;
    }
    ASSERT_EQ(mknodat(below.number(), "file", S_IFREG | 0600, 0), 0);
    path += "/file";
    EXPECT_EQ(move(FileURL(path)), std::nullopt);
    EXPECT_EQ(originsIn(trash), Origins{path});
    EXPECT_EQ(move(folder), std::nullopt) << "a folder as deep";
    EXPECT_EQ(mover.refusal(FileURL("/" + std::string(5000, 'x') + "/file")), TrashError::pathTooLong);
}

TEST_F(TrashTest, LeavesOrphansAndLoneNotesAlone) {
    fs::create_directories(trash / "files" / "sub.3");
    fs::create_directories(trash / "info");
    std::ofstream(trash / "files" / "a.txt") << "orphan";
    std::ofstream(trash / "info" / "b.txt.trashinfo") << "lone";
    std::ofstream(trash / "files" / "sub") << "orphan";
    fs::create_directories(folder / "sub");
    Origins expected{"broken", "broken", "broken", "no item: broken"};
    for (const FileURL& url : {make("a.txt", "new"), make("b.txt", "new"), FileURL((folder / "sub").string())}) {
        EXPECT_EQ(move(url), std::nullopt);
        expected.insert(url.path());
    }
    EXPECT_EQ(contentOf(trash / "files" / "a.txt"), "orphan");
    EXPECT_EQ(contentOf(trash / "files" / "sub"), "orphan");
    EXPECT_EQ(contentOf(trash / "info" / "b.txt.trashinfo"), "lone");
    EXPECT_EQ(originsIn(trash), expected);
}

TEST_F(TrashTest, LeavesNoHalfWrittenNote) {
    const FileURL url = make("file");
    const auto error = moveWithShortWrites(url);
    EXPECT_TRUE(error);
    EXPECT_EQ(contentOf(url.path()), "content");
    EXPECT_EQ(originsIn(trash), Origins());
}

TEST_F(TrashTest, MovesOwnFoldersThatAreClosed) {
    for (const mode_t mode : {0555U, 0000U, 0111U}) {
        const fs::path closed = folder / std::to_string(mode);
        fs::create_directories(closed / "inner");
        std::ofstream(closed / "inner" / "file") << "content";
        chmod((closed / "inner").c_str(), 0);
        chmod(closed.c_str(), mode);
        EXPECT_EQ(move(closed), std::nullopt) << std::oct << mode;
        struct stat status {};
        ASSERT_EQ(stat((trash / "files" / closed.filename()).c_str(), &status), 0);
        EXPECT_EQ(status.st_mode & 07777U, mode) << "as it was";
    }
}

TEST_F(TrashTest, ClearsAwayWhatAKilledMoveLeft) {
    ASSERT_EQ(move(make("first")), std::nullopt);
    const fs::path stale = trash / ".duskfern-0123456789abcdef";
    fs::create_directories(stale / "item" / "closed");
    std::ofstream(stale / "item" / "closed" / "file") << "half";
    chmod((stale / "item" / "closed").c_str(), 0);
    fs::create_directories(trash / ".duskfern-mine");
    ASSERT_EQ(move(make("second")), std::nullopt);
    EXPECT_TRUE(isThere(stale)) << "once in a program's life is enough";
    FreedesktopTrash another({FileURL(home.string()), FileURL((home / ".local/share").string())});
    const FileURL url = make("third");
    ASSERT_EQ(another.move(url, fileStatus(url)->identity), std::nullopt);
    EXPECT_FALSE(isThere(stale));
    EXPECT_TRUE(isThere(trash / ".duskfern-mine")) << "not one of ours";
}
