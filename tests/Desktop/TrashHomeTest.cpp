// What lies on the home's file system: one rename, whatever the name and kind, or a refusal, and the reason for it.

#include "Desktop/TrashFixture.h"
#include "Trash/TrashNames.h"
#include "support/Shortage.h"

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
        {"nandú.txt", {}, suffix + 9, "nand.txt"},
        {"nandú.txt", 12, suffix + 9, "na.12.txt"},
        {"ab.jpeg", 7, suffix + 4, "ab.7"},
        {"a😀b", {}, suffix + 4, "a"},
        {"no \x80\x80\x80\x80", {}, suffix + 6, "no \x80\x80\x80"},
    };
    for (const auto& [name, number, longest, expected] : rows) {
        EXPECT_EQ(nameInTrash(name, number, longest), expected);
    }
}

TEST_F(TrashTest, NotesTheSizesOfFolders) {
    write(trash / "directorysizes", "7 7 a%C3%B1o%201\nx 7 broken\n7 7 other\n");
    const fs::path file = make("año 1/file", std::string(8192, 'x'));
    std::int64_t bytes = 0;
    for (const fs::path& path : {file, file.parent_path()}) {
        bytes += fileStatus(FileURL(path.string()))->allocated.value_or(0);
    }
    ASSERT_EQ(move(file.parent_path()), std::nullopt);
    ASSERT_EQ(move(make("plain")), std::nullopt);
    const FileURL note(noteOf(trash / "files/año 1").string());
    const std::string time = std::to_string(fileStatus(note)->modifiedSeconds);
    EXPECT_EQ(contentOf(trash / "directorysizes"),
              "7 7 other\n" + std::to_string(bytes) + ' ' + time + " a%C3%B1o%201\n");
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
    std::vector<std::jthread> programs;
    for (const char* program : {"a", "b", "c"}) {
        programs.emplace_back([this, program] {
            for (int i = 0; i < 40; ++i) {
                const std::string album = program + std::to_string(i);
                EXPECT_EQ(moveAnew(make(album + "/foto.jpg", album)), std::nullopt);
            }
        });
    }
    programs.clear();
    EXPECT_EQ(originsIn(trash).size(), 120U);
    for (const fs::path& item : entriesOf(trash / "files")) {
        EXPECT_NE(contentOf(noteOf(item)).find('/' + contentOf(item) + "/foto.jpg\n"), std::string::npos)
            << "a note of another";
    }
}

TEST_F(TrashTest, LeavesOrphansAndLoneNotesAlone) {
    const std::vector<fs::path> there{trash / "files/a.txt", trash / "files/sub", trash / "info/b.txt.trashinfo"};
    for (const fs::path& path : there) {
        write(path, "of another program");
    }
    Origins expected{"broken", "broken", "no item: broken"};
    for (const fs::path& path : {make("a.txt"), make("b.txt"), make("sub/file").parent_path()}) {
        EXPECT_EQ(move(path), std::nullopt);
        expected.insert(path);
    }
    for (const fs::path& path : there) {
        EXPECT_EQ(contentOf(path), "of another program") << path;
    }
    EXPECT_EQ(originsIn(trash), expected);
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
    const fs::path stale = trash / ".duskfern-0123456789abcdef";
    write(stale / "item/closed/file", "half");
    fs::permissions(stale / "item/closed", fs::perms::none);
    const fs::path other = write(trash / ".duskfern-mine/file");
    ASSERT_EQ(move(make("file")), std::nullopt);
    EXPECT_FALSE(isThere(stale));
    EXPECT_TRUE(isThere(other)) << "not one of ours";
}

TEST_F(TrashTest, RefusesWhatIsGoneOrAnotherThanWasConfirmed) {
    const fs::path file = make("file");
    expectRefused(folder / "missing", TrashError::gone);
    expectRefused(file / "below a file", TrashError::gone);
    expectRefused(folder / "./..", TrashError::other);
    expectRefused(folder / ".", TrashError::other);
    expectRefused("/", TrashError::holdsHome);
    const FileIdentity confirmed = fileStatus(FileURL(file.string()))->identity;
    fs::rename(file, folder / "kept");
    EXPECT_EQ(mover.move(FileURL(make("file").string()), confirmed), TrashError::changed);
    EXPECT_TRUE(isThere(file));
    EXPECT_FALSE(isThere(trash));
}

TEST_F(TrashTest, RefusesTheHomeAndTheTrash) {
    ASSERT_EQ(move(make("item")), std::nullopt);
    fs::create_directories(trash / "files/deep/er");
    expectRefused(home, TrashError::holdsHome);
    expectRefused(home.parent_path(), TrashError::holdsHome);
    // By another way too.
    fs::create_directory_symlink(trash / "files", folder / "way");
    for (const fs::path& path :
         {home / ".local", home / ".local/share", trash, trash / "files", trash / "info", trash / "files/item",
          trash / "files/deep/er", trash / "info/item.trashinfo", folder / "way/item"}) {
        expectRefused(path, TrashError::ofTrash);
    }
    EXPECT_EQ(move(folder / "way"), std::nullopt) << "a link that leads there is only a link";
    inPrivateMounts([&] {
        fs::create_directories(folder / "bound");
        ASSERT_EQ(mount((trash / "files").c_str(), (folder / "bound").c_str(), nullptr, MS_BIND, nullptr), 0);
        expectRefused(folder / "bound/item", TrashError::ofTrash);
    });
}

TEST_F(TrashTest, RefusesWhatIsOfOthersWhereItCouldNotBeEmptied) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "nobody else's things can be made";
    }
    inPrivateMounts([&] {
        // What is tried, what of it is somebody else's with all in it, and how open that is.
        const std::tuple<const char*, const char*, mode_t, std::optional<TrashError>> rows[] = {
            {"full", "full/file", 0755, TrashError::cannotBeEmptied},
            {"full, open to all", "full, open to all/file", 0777, {}},
            {"sticky", "sticky/file", 01777, TrashError::cannotBeEmptied},
            {"full inside", "full inside/theirs/file", 0755, TrashError::cannotBeEmptied},
            {"closed inside", "closed inside/theirs/", 0700, TrashError::cannotBeEmptied},
            {"empty inside", "empty inside/theirs/", 0755, {}},
            {"shared/their file", "shared/their file", 01777, TrashError::foreign},
        };
        for (const auto& [item, theirs, mode, error] : rows) {
            const fs::path given = (folder / theirs).parent_path();
            fs::create_directories(given);
            if (!std::string_view(theirs).ends_with('/')) {
                make(theirs);
            }
            ASSERT_TRUE(runInShell("chown -R 23456 '" + given.string() + "'"));
            ASSERT_EQ(chmod(given.c_str(), mode), 0);
        }
        becomeOrdinary(root.path());
        for (const auto& [item, theirs, mode, error] : rows) {
            EXPECT_EQ(move(folder / item), error) << item;
            EXPECT_NE(isThere(folder / item), !error) << item;
        }
    });
}

TEST_F(TrashTest, RefusesWhatIsProtected) {
    const auto protect = [](const char* how, const fs::path& path) {
        return runInShell(std::string("chattr ") + how + " '" + path.string() + "' 2>/dev/null");
    };
    onFileSystem("tmpfs", disk, [&] {
        // One would be renamed, and could not be emptied; the other copied.
        for (const fs::path& path : {make("sub/file"), write(disk / "sub/file")}) {
            if (!protect("+i", path)) {
                impossibleHere();
            }
            EXPECT_EQ(move(path), TrashError::isProtected) << path;
            EXPECT_EQ(move(path.parent_path()), TrashError::isProtected) << path;
            protect("-i", path);
        }
    });
}

TEST_F(TrashTest, TellsWhatIsWrongWithTheTrash) {
    const fs::path path = make("file");
    const FileURL url(path.string());
    FreedesktopTrash homeless({FileURL((home / "none").string()), FileURL((home / "none/share").string())});
    EXPECT_EQ(homeless.move(url, fileStatus(url)->identity), TrashError::noHome);
    EXPECT_EQ(homeless.refusal(url), TrashError::noHome);
    EXPECT_FALSE(isThere(home / "none"));

    write(trash, "a file");
    EXPECT_EQ(move(path), TrashError::noTrash);
    fs::remove(trash);
    ASSERT_EQ(move(make("first")), std::nullopt);
    make("a/b/c/file", std::string(8192, 'x'));
    inPrivateMounts([&] {
        becomeOrdinary(root.path());
        for (const char* closed : {"info", "files"}) {
            fs::permissions(trash / closed, fs::perms::owner_read | fs::perms::owner_exec);
            expectRefused(path, TrashError::noTrash);
            fs::permissions(trash / closed, fs::perms::owner_all);
        }
        EXPECT_EQ(originsIn(trash).size(), 1U) << "no note is left";
        // With few descriptors, everything is looked at before the move, or nothing is moved.
        std::optional<TrashError> error = TrashError::tooManyOpen;
        for (rlim_t limit = 3; limit < 100 && error == TrashError::tooManyOpen; ++limit) {
            const Limit few(RLIMIT_NOFILE, limit);
            error = move(folder / "a");
        }
        EXPECT_EQ(error, std::nullopt);
        EXPECT_GE(std::stoll(contentOf(trash / "directorysizes")), 8192);
    });
}

TEST(TrashErrorText, NamesTheFile) {
    const FileURL url("/home/ana/100%1 a\xff\nb" + std::string(200, 'n'));
    for (int i = 0; i <= static_cast<int>(TrashError::other); ++i) {
        const QString text = trashErrorText(static_cast<TrashError>(i), url);
        EXPECT_TRUE(text.contains(QStringLiteral("“100%1 a\uFFFD\uFFFDb")) && text.size() < 200) << qPrintable(text);
    }
}
