// What never goes to the Trash, and the reason that is told.

#include "Desktop/TrashFixture.h"

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <array>
#include <fstream>

using namespace trashtest;  // NOLINT(google-build-using-namespace)

TEST_F(TrashTest, RefusesWhatIsGoneOrAnotherThanWasConfirmed) {
    const FileURL file = make("file");
    const FileIdentity confirmed = fileStatus(file)->identity;
    const std::array<std::pair<FileURL, TrashError>, 5> cases = {{
        {FileURL((folder / "missing").string()), TrashError::gone},
        {file.appendingPathComponent("below a file"), TrashError::gone},
        {FileURL((folder / "." / "..").string()), TrashError::other},
        {FileURL((folder / ".").string()), TrashError::other},
        {FileURL("/"), TrashError::holdsHome},
    }};
    for (const auto& [url, error] : cases) {
        EXPECT_EQ(mover.move(url, confirmed), error) << url.path();
        EXPECT_EQ(mover.refusal(url), error) << url.path();
    }
    fs::rename(file.path(), folder / "kept");
    for (const auto& make : std::vector<std::function<void()>>{
             [&] { std::ofstream(file.path()) << "content"; },
             [&] { fs::create_directories(file.path()); },
             [&] { fs::create_symlink("kept", file.path()); },
         }) {
        make();
        EXPECT_EQ(mover.move(file, confirmed), TrashError::changed);
        EXPECT_TRUE(isThere(file.path()));
        fs::remove(file.path());
    }
    EXPECT_FALSE(isThere(trash));
}

TEST_F(TrashTest, RefusesTheHomeAndTheTrash) {
    ASSERT_EQ(move(make("item")), std::nullopt);
    fs::create_directories(trash / "files" / "deep" / "er");
    const std::pair<fs::path, TrashError> rows[] = {
        {home, TrashError::holdsHome},
        {home.parent_path(), TrashError::holdsHome},
        {home / ".local", TrashError::ofTrash},
        {home / ".local/share", TrashError::ofTrash},
        {trash, TrashError::ofTrash},
        {trash / "files", TrashError::ofTrash},
        {trash / "info", TrashError::ofTrash},
        {trash / "files" / "item", TrashError::ofTrash},
        {trash / "files" / "deep" / "er", TrashError::ofTrash},
        {trash / "info" / "item.trashinfo", TrashError::ofTrash},
    };
    for (const auto& [path, error] : rows) {
        EXPECT_EQ(move(path), error) << path;
        EXPECT_EQ(mover.refusal(FileURL(path.string())), error) << path;
        EXPECT_TRUE(isThere(path));
    }
    // By another way too.
    fs::create_directory_symlink(trash / "files", folder / "way");
    EXPECT_EQ(move(folder / "way" / "item"), TrashError::ofTrash);
    EXPECT_EQ(move(folder / "way"), std::nullopt) << "a link that leads there is only a link";
    inPrivateMounts([&] {
        fs::create_directories(folder / "bound");
        ASSERT_EQ(mount((trash / "files").c_str(), (folder / "bound").c_str(), nullptr, MS_BIND, nullptr), 0);
        EXPECT_EQ(move(folder / "bound" / "item"), TrashError::ofTrash);
    });
}

TEST_F(TrashTest, RefusesWhatMayNotBeTakenAway) {
    inPrivateMounts([&] {
        fs::create_directories(folder / "closed");
        make("closed/file");
        becomeOrdinary(root.path());
        for (const mode_t mode : {0555U, 0000U, 0666U}) {
            chmod((folder / "closed").c_str(), mode);
            EXPECT_EQ(move(folder / "closed" / "file"), TrashError::noPermission) << std::oct << mode;
            EXPECT_EQ(mover.refusal(FileURL((folder / "closed" / "file").string())), TrashError::noPermission);
        }
        chmod((folder / "closed").c_str(), 0755);
        EXPECT_TRUE(isThere(folder / "closed" / "file"));
    });
}

TEST_F(TrashTest, RefusesWhatIsOfOthersWhereItCouldNotBeEmptied) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "nobody else's things can be made";
    }
    inPrivateMounts([&] {
        struct Row {
            const char* name = nullptr;
            mode_t mode = 0;  ///< Of the folder of somebody else.
            bool isEmpty = false;
            bool isInside = false;  ///< In a folder of one's own.
            std::optional<TrashError> error{};
        };
        const Row rows[] = {
            {"full", 0755, false, false, TrashError::cannotBeEmptied},
            {"full, closed", 0700, false, false, TrashError::cannotBeEmptied},
            {"full, open to all", 0777, false, false, std::nullopt},
            {"sticky", 01777, false, false, TrashError::cannotBeEmptied},
            {"full inside", 0755, false, true, TrashError::cannotBeEmptied},
            {"closed inside", 0700, true, true, TrashError::cannotBeEmptied},
            {"empty inside", 0755, true, true, std::nullopt},
        };
        for (const Row& row : rows) {
            const fs::path theirs = row.isInside ? folder / row.name / "theirs" : folder / row.name;
            fs::create_directories(theirs);
            if (!row.isEmpty) {
                std::ofstream(theirs / "file") << "content";
                ASSERT_EQ(chown((theirs / "file").c_str(), somebodyElse, somebodyElse), 0);
            }
            ASSERT_EQ(chown(theirs.c_str(), somebodyElse, somebodyElse), 0);
            ASSERT_EQ(chmod(theirs.c_str(), row.mode), 0);
        }
        make("their file");
        ASSERT_EQ(chown((folder / "their file").c_str(), somebodyElse, somebodyElse), 0);
        fs::create_directories(folder / "everybody's");
        make("everybody's/their file");
        ASSERT_EQ(chown((folder / "everybody's" / "their file").c_str(), somebodyElse, somebodyElse), 0);
        ASSERT_EQ(chown((folder / "everybody's").c_str(), somebodyElse, somebodyElse), 0);
        ASSERT_EQ(chmod((folder / "everybody's").c_str(), 01777), 0);
        becomeOrdinary(root.path());
        for (const Row& row : rows) {
            EXPECT_EQ(move(folder / row.name), row.error) << row.name;
            EXPECT_NE(isThere(folder / row.name), !row.error) << row.name;
        }
        EXPECT_EQ(move(folder / "everybody's" / "their file"), TrashError::foreign);
        EXPECT_EQ(mover.refusal(FileURL((folder / "everybody's" / "their file").string())), TrashError::foreign);
        EXPECT_EQ(move(folder / "their file"), std::nullopt);
    });
}

TEST_F(TrashTest, RefusesWhatIsProtected) {
    fs::create_directories(folder / "sub");
    const FileURL url = make("sub/file");
    const int file = open(url.path().c_str(), O_RDONLY | O_CLOEXEC);
    int flags = 0;
    ioctl(file, FS_IOC_GETFLAGS, &flags);
    int fixed = flags | FS_IMMUTABLE_FL;
    const bool isPossible = ioctl(file, FS_IOC_SETFLAGS, &fixed) == 0;
    const std::optional<TrashError> itself = isPossible ? move(url) : TrashError::isProtected;
    const std::optional<TrashError> inside = isPossible ? move(folder / "sub") : TrashError::isProtected;
    ioctl(file, FS_IOC_SETFLAGS, &flags);
    close(file);
    EXPECT_EQ(itself, TrashError::isProtected);
    EXPECT_EQ(inside, TrashError::isProtected) << "could not be emptied";
    if (!isPossible) {
        GTEST_SKIP() << "nothing can be protected here";
    }
}

TEST_F(TrashTest, TellsWhatIsWrongWithTheTrash) {
    const FileURL url = make("file");
    FreedesktopTrash homeless({FileURL((home / "none").string()), FileURL((home / "none/share").string())});
    EXPECT_EQ(homeless.move(url, fileStatus(url)->identity), TrashError::noHome);
    EXPECT_EQ(homeless.refusal(url), TrashError::noHome);
    EXPECT_FALSE(isThere(home / "none"));

    fs::create_directories(trash.parent_path());
    std::ofstream(trash) << "a file";
    EXPECT_EQ(move(url), TrashError::noTrash);
    fs::remove(trash);
    ASSERT_EQ(move(make("first")), std::nullopt);
    inPrivateMounts([&] {
        becomeOrdinary(root.path());
        for (const char* closed : {"info", "files"}) {
            fs::permissions(trash / closed, fs::perms::owner_read | fs::perms::owner_exec);
            EXPECT_EQ(move(url), TrashError::noTrash) << closed;
            EXPECT_EQ(mover.refusal(url), TrashError::noTrash) << closed;
            fs::permissions(trash / closed, fs::perms::owner_all);
        }
        EXPECT_EQ(originsIn(trash).size(), 1U) << "no note is left";
        rlimit few{3, 3};
        ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &few), 0);
        EXPECT_EQ(mover.move(url, {}), TrashError::tooManyOpen);
    });
    EXPECT_TRUE(isThere(url.path()));
}

TEST(TrashErrorText, NamesTheFileAndDiffersByReason) {
    std::set<QString> texts;
    const int count = static_cast<int>(TrashError::other) + 1;
    for (int i = 0; i < count; ++i) {
        const QString text = trashErrorText(static_cast<TrashError>(i), FileURL("/home/ana/100%1 a\xff\nb"));
        EXPECT_TRUE(text.contains(QStringLiteral("“100%1 a\uFFFD\uFFFDb”"))) << qPrintable(text);
        EXPECT_TRUE(text.endsWith(QLatin1Char('.'))) << qPrintable(text);
        texts.insert(text);
        const QString shortened = trashErrorText(static_cast<TrashError>(i), FileURL("/" + std::string(255, 'n')));
        EXPECT_LT(shortened.size(), 200);
    }
    EXPECT_EQ(texts.size(), static_cast<size_t>(count));
}
