// What lies on the home's file system: one rename, whatever the name and kind, and whoever else uses the Trash.

#include "Desktop/TrashFixture.h"
#include "Trash/TrashNames.h"

#include <regex>
#include <thread>
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
        for (const char* content : {"first", "second", "third"}) {
            const fs::path path = make(name, content);
            ASSERT_EQ(move(path), std::nullopt) << name;
            EXPECT_FALSE(isThere(path)) << name;
            expected.insert(path);
        }
        EXPECT_TRUE(name.size() > 240 || contentOf(trash / "files" / name) == "first") << name;
    }
    EXPECT_EQ(originsIn(trash), expected);
}

TEST_F(TrashTest, IsRestoredByTheDesktop) {
    const fs::path tree = folder / "árbol 50%";
    make("árbol 50%/sub/\xff\n");
    const std::string before = portraitOf(tree);
    ASSERT_EQ(move(tree), std::nullopt);
    // The tests themselves are kept from gvfs.
    const std::string onDesktop = "env -u GIO_USE_VFS HOME='" + home.string() + "' XDG_DATA_HOME='" +
                                  trash.parent_path().string() + "' dbus-run-session -- gio ";
    if (!runInShell(onDesktop + "list trash:/// 2>/dev/null | grep -q rbol")) {
        GTEST_SKIP() << "no desktop that restores is installed";
    }
    const std::string trashed = percentEncoded(tree.filename().string());
    ASSERT_TRUE(runInShell(onDesktop + "move 'trash:///" + trashed + "' '" + tree.string() + "' 2>/dev/null"));
    EXPECT_EQ(portraitOf(tree), before);
    EXPECT_EQ(originsIn(trash), Origins());
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
    write(trash / "directorysizes", "7 7 sub\nx 7 broken\n7 7 other\n");
    make("año 1/file", std::string(8192, 'x'));
    fs::create_directories(folder / "sub");
    for (const fs::path& path : {folder / "año 1", folder / "sub", make("plain")}) {
        ASSERT_EQ(move(path), std::nullopt);
    }
    struct stat note {};
    ASSERT_EQ(stat(noteOf(trash / "files/año 1").c_str(), &note), 0);
    const std::string time = std::to_string(note.st_mtim.tv_sec);
    const std::string sizes = contentOf(trash / "directorysizes");
    std::smatch bytes;
    ASSERT_TRUE(
        std::regex_match(sizes, bytes, std::regex("7 7 other\n(\\d+) " + time + " a%C3%B1o%201\n\\d+ \\d+ sub\n")))
        << sizes;
    EXPECT_NEAR(std::stod(bytes[1]), 8192 + 2048, 2048);
}

TEST_F(TrashTest, MovesALinkItselfAndNotesWhereThingsReallyLay) {
    const fs::path target = make("target");
    const fs::path link = folder / "link";
    fs::create_symlink(target, link);
    EXPECT_EQ(move(link), std::nullopt);
    EXPECT_EQ(fs::read_symlink(trash / "files/link"), target);

    make("below/target", "the other");
    fs::create_directory_symlink("folder/below", home / "way");
    // By the letter this is in the home, on the disk where ".." of the link's target is.
    EXPECT_EQ(move(home / "way/../target"), std::nullopt);
    EXPECT_EQ(contentOf(trash / "files/target"), "content");
    EXPECT_EQ(originsIn(trash), (Origins{link, target}));
}

TEST_F(TrashTest, FindsPathsLongerThanTheKernelTakes) {
    const std::string path = root.deepFolder("home/folder");
    EXPECT_EQ(move(path), std::nullopt);
    EXPECT_EQ(originsIn(trash), Origins{path});
    EXPECT_EQ(move(folder), std::nullopt) << "a folder as deep";
    EXPECT_EQ(mover.refusal(FileURL('/' + std::string(5000, 'x') + "/file")), TrashError::pathTooLong);
}

TEST_F(TrashTest, SharesNamesWithOtherProgramsAtTheSameTime) {
    std::vector<fs::path> photos;
    for (int i = 0; i < 120; ++i) {
        const std::string album = std::to_string(i);
        photos.push_back(make(album + "/foto.jpg", album));
    }
    std::vector<std::jthread> programs;
    for (std::size_t first = 0; first < 3; ++first) {
        programs.emplace_back([this, first, &photos] {
            for (std::size_t i = first; i < photos.size(); i += 3) {
                EXPECT_EQ(moveAnew(photos[i]), std::nullopt);
            }
        });
    }
    programs.clear();
    EXPECT_EQ(originsIn(trash), Origins(photos.begin(), photos.end()));
    for (const fs::path& item : entriesOf(trash / "files")) {
        EXPECT_NE(contentOf(noteOf(item)).find('/' + contentOf(item) + "/foto.jpg\n"), std::string::npos)
            << "a note of another";
    }
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
    expectNoHalfWrittenNote(make("file"), trash);
}

TEST_F(TrashTest, MovesOwnClosedFoldersButNothingOutOfThem) {
    inPrivateMounts([&] {
        becomeOrdinary(root.path());
        for (const auto closed : {fs::perms(0555), fs::perms(0000), fs::perms(0666)}) {
            const fs::path file = make(std::to_string(static_cast<int>(closed)) + "/file");
            const fs::path parent = file.parent_path();
            const fs::path inTrash = trash / "files" / parent.filename();
            fs::permissions(parent, closed);
            expectRefused(file, TrashError::noPermission);
            EXPECT_EQ(move(parent), std::nullopt) << parent;
            EXPECT_EQ(fs::status(inTrash).permissions(), closed) << "as it was";
            fs::permissions(inTrash, fs::perms::owner_all);
            EXPECT_EQ(contentOf(inTrash / "file"), "content") << parent;
        }
    });
}

TEST_F(TrashTest, ClearsAwayWhatAKilledMoveLeft) {
    ASSERT_EQ(move(make("first")), std::nullopt);
    const fs::path stale = trash / ".duskfern-0123456789abcdef";
    write(stale / "item/closed/file", "half");
    fs::permissions(stale / "item/closed", fs::perms::none);
    fs::create_directories(trash / ".duskfern-mine");
    ASSERT_EQ(move(make("second")), std::nullopt);
    EXPECT_TRUE(isThere(stale)) << "once in a program's life is enough";
    ASSERT_EQ(moveAnew(make("third")), std::nullopt);
    EXPECT_FALSE(isThere(stale));
    EXPECT_TRUE(isThere(trash / ".duskfern-mine")) << "not one of ours";
}
