// What never goes to the Trash, and the reason that is told.

#include "Desktop/TrashFixture.h"
#include "support/Shortage.h"

#include <sys/stat.h>

#include <tuple>

using namespace trashtest;  // NOLINT(google-build-using-namespace)

TEST_F(TrashTest, RefusesWhatIsGoneOrAnotherThanWasConfirmed) {
    const fs::path file = make("file");
    const std::pair<fs::path, TrashError> rows[] = {
        {folder / "missing", TrashError::gone}, {file / "below a file", TrashError::gone},
        {folder / "./..", TrashError::other},   {folder / ".", TrashError::other},
        {"/", TrashError::holdsHome},
    };
    for (const auto& [path, error] : rows) {
        expectRefused(path, error);
    }
    const FileIdentity confirmed = fileStatus(FileURL(file.string()))->identity;
    fs::rename(file, folder / "kept");
    EXPECT_EQ(mover.move(FileURL(make("file").string()), confirmed), TrashError::changed);
    EXPECT_TRUE(isThere(file));
    EXPECT_FALSE(isThere(trash));
}

TEST_F(TrashTest, RefusesTheHomeAndTheTrash) {
    ASSERT_EQ(move(make("item")), std::nullopt);
    fs::create_directories(trash / "files/deep/er");
    for (const fs::path& path : {home, home.parent_path()}) {
        expectRefused(path, TrashError::holdsHome);
    }
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
            {"full, closed", "full, closed/file", 0700, TrashError::cannotBeEmptied},
            {"full, open to all", "full, open to all/file", 0777, {}},
            {"sticky", "sticky/file", 01777, TrashError::cannotBeEmptied},
            {"full inside", "full inside/theirs/file", 0755, TrashError::cannotBeEmptied},
            {"closed inside", "closed inside/theirs/", 0700, TrashError::cannotBeEmptied},
            {"empty inside", "empty inside/theirs/", 0755, {}},
            {"everybody's/their file", "everybody's/their file", 01777, TrashError::foreign},
        };
        const auto giveAway = [](const fs::path& path) {
            ASSERT_EQ(chown(path.c_str(), somebodyElse, somebodyElse), 0);
        };
        for (const auto& [item, theirs, mode, error] : rows) {
            const fs::path path = folder / theirs;
            fs::create_directories(path.parent_path());
            if (path.has_filename()) {
                giveAway(write(path));
            }
            giveAway(path.parent_path());
            ASSERT_EQ(chmod(path.parent_path().c_str(), mode), 0);
        }
        giveAway(make("their file"));
        becomeOrdinary(root.path());
        for (const auto& [item, theirs, mode, error] : rows) {
            EXPECT_EQ(move(folder / item), error) << item;
            EXPECT_NE(isThere(folder / item), !error) << item;
        }
        EXPECT_EQ(move(folder / "their file"), std::nullopt);
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
            const auto itself = move(path);
            const auto around = move(path.parent_path());
            protect("-i", path);
            EXPECT_EQ(itself, TrashError::isProtected) << path;
            EXPECT_EQ(around, TrashError::isProtected) << path;
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
    const fs::path deep = make("a/b/c/file", std::string(8192, 'x')).parent_path().parent_path().parent_path();
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
            error = move(deep);
        }
        EXPECT_EQ(error, std::nullopt);
        EXPECT_GE(std::stoll(contentOf(trash / "directorysizes")), 8192);
    });
}

TEST(TrashErrorText, NamesTheFileAndDiffersByReason) {
    std::set<QString> texts;
    const FileURL url("/home/ana/100%1 a\xff\nb" + std::string(200, 'n'));
    const int count = static_cast<int>(TrashError::other) + 1;
    for (int i = 0; i < count; ++i) {
        const QString text = trashErrorText(static_cast<TrashError>(i), url);
        EXPECT_TRUE(text.contains(QStringLiteral("“100%1 a\uFFFD\uFFFDb"))) << qPrintable(text);
        EXPECT_TRUE(text.endsWith(QLatin1Char('.'))) << qPrintable(text);
        EXPECT_LT(text.size(), 200);
        texts.insert(text);
    }
    EXPECT_EQ(texts.size(), static_cast<size_t>(count));
}
