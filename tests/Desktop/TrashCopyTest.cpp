// What no rename brings into a Trash that file managers show: copied whole, compared, then removed.

#include "Desktop/TrashFixture.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>

#include <fstream>

using namespace trashtest;  // NOLINT(google-build-using-namespace)

namespace {

/// Everything that a copy could forget.
void makeTreasure(const fs::path& tree) {
    fs::create_directories(tree / "sub" / "closed to others");
    std::ofstream(tree / "file") << std::string(100'000, 'x');
    std::ofstream(tree / "empty").flush();
    std::ofstream(tree / ".hidden") << "hidden";
    std::ofstream(tree / "sub" / "name\n\xff%41") << "odd";
    fs::create_hard_link(tree / "file", tree / "sub" / "again");
    fs::create_hard_link(tree / "sub" / "name\n\xff%41", tree / "twice");
    fs::create_symlink("nowhere", tree / "dangling");
    fs::create_symlink("file", tree / "sub" / "link");
    ASSERT_EQ(mkfifo((tree / "pipe").c_str(), 0640), 0);
    {
        std::ofstream sparse(tree / "sparse");
        sparse.seekp(3 << 20U);
        sparse << "island";
    }
    fs::resize_file(tree / "sparse", 8U << 20U);
    for (const char* name : {"file", "sub"}) {
        // Where a file system has no such attributes there is none to lose.
        (void)setxattr((tree / name).c_str(), "user.note", "value", 5, 0);
    }
    // The user may write, as the mask allows: version 2, then tag, permissions and id of each entry.
    const std::string list(
        "\x02\0\0\0\x01\0\x06\0\xff\xff\xff\xff\x02\0\x06\0\x7b\0\0\0\x04\0\x04\0\xff\xff\xff\xff"
        "\x10\0\x06\0\xff\xff\xff\xff\x20\0\x04\0\xff\xff\xff\xff",
        44);
    (void)setxattr((tree / "file").c_str(), "system.posix_acl_access", list.data(), list.size(), 0);
    chmod((tree / "empty").c_str(), 0400);
    chmod((tree / "sub" / "closed to others").c_str(), 0700);
    if (geteuid() == 0) {
        ASSERT_EQ(lchown((tree / "dangling").c_str(), 12, 34), 0);
        ASSERT_EQ(chown((tree / "empty").c_str(), 12, 34), 0);
    }
    for (const char* name : {"dangling", "file", "sub/link", "sub", "pipe", ""}) {
        const timespec times[] = {{1'000'000'000, 0}, {1'234'567'890, 123'456'789}};
        ASSERT_EQ(utimensat(AT_FDCWD, (tree / name).c_str(), times, AT_SYMLINK_NOFOLLOW), 0);
    }
}

}  // namespace

TEST_F(TrashTest, CopiesWholeTreesOutOfMemory) {
    const fs::path disk = root.path("disk");
    onFileSystem("tmpfs", disk, [&] {
        makeTreasure(disk / "tree");
        const std::string before = portraitOf(disk / "tree");
        std::int64_t last = 0;
        std::int64_t total = 0;
        const auto progress = [&](std::int64_t copied, std::int64_t all) {
            EXPECT_GE(copied, last);
            last = copied;
            total = all;
        };
        ASSERT_EQ(move(FileURL((disk / "tree").string()), progress), std::nullopt);
        EXPECT_FALSE(isThere(disk / "tree"));
        EXPECT_EQ(originsIn(trash), Origins{(disk / "tree").string()});
        EXPECT_EQ(portraitOf(trash / "files" / "tree"), before);
        EXPECT_EQ(last, total);
        EXPECT_GE(total, 100'000);
        EXPECT_LT(total, 1'000'000) << "holes are no bytes to copy";
        EXPECT_TRUE(contentOf(trash / "directorysizes").ends_with(" tree\n"));

        std::ofstream(disk / "single") << "one";
        fs::create_symlink("nowhere", disk / "link");
        for (const char* name : {"single", "link"}) {
            const std::string portrait = portraitOf(disk / name);
            EXPECT_EQ(move(disk / name), std::nullopt);
            EXPECT_FALSE(isThere(disk / name));
            EXPECT_EQ(portraitOf(trash / "files" / name), portrait);
        }
        EXPECT_FALSE(isThere(disk / (".Trash-" + std::to_string(geteuid())))) << "nobody would see it";
    });
}

TEST_F(TrashTest, CopiesWhereARenameStopsAtAMount) {
    inPrivateMounts([&] {
        const fs::path other = home / "other";
        const fs::path bound = home / "bound";
        fs::create_directories(other / "tree");
        fs::create_directories(bound);
        ASSERT_EQ(mount(other.c_str(), bound.c_str(), nullptr, MS_BIND, nullptr), 0);
        makeTreasure(other / "tree");
        const std::string before = portraitOf(bound / "tree");
        EXPECT_EQ(move(bound / "tree"), std::nullopt);
        EXPECT_EQ(originsIn(trash), Origins{(bound / "tree").string()});
        EXPECT_EQ(portraitOf(trash / "files" / "tree"), before);
        EXPECT_TRUE(fs::is_empty(other));
    });
}

TEST_F(TrashTest, RefusesToCopyWhatIsClosedInside) {
    const fs::path disk = root.path("disk");
    onFileSystem("tmpfs", disk, [&] {
        fs::create_directories(disk / "tree" / "inner" / "empty");
        std::ofstream(disk / "tree" / "inner" / "file") << "content";
        becomeOrdinary(root.path());
        struct Row {
            const char* path = nullptr;
            mode_t mode = 0;
            std::optional<TrashError> error{};
        };
        const Row rows[] = {
            {"inner", 0555, TrashError::closedInside},
            {"inner", 0000, TrashError::closedInside},
            {"inner/file", 0200, TrashError::closedInside},
            {".", 0555, TrashError::closedInside},
            {"inner/empty", 0555, std::nullopt},
        };
        for (const Row& row : rows) {
            const fs::path path = disk / "tree" / row.path;
            const fs::perms before = fs::status(path).permissions();
            chmod(path.c_str(), row.mode);
            EXPECT_EQ(move(disk / "tree"), row.error) << row.path;
            if (row.error) {
                fs::permissions(path, before);
            }
        }
        EXPECT_EQ(originsIn(trash), Origins{(disk / "tree").string()});
    });
}

TEST_F(TrashTest, RefusesWhatCannotBeCopiedWhole) {
    const fs::path disk = root.path("disk");
    onFileSystem("tmpfs", disk, [&] {
        // A home without room for it and a tenth more.
        ASSERT_EQ(mount("home", home.c_str(), "tmpfs", 0, "size=1m"), 0);
        std::ofstream(disk / "big") << std::string(1'000'000, 'x');
        EXPECT_EQ(move(disk / "big"), TrashError::homeFull);
        EXPECT_EQ(fs::file_size(disk / "big"), 1'000'000U);
        std::ofstream(disk / "fitting") << std::string(800'000, 'x');
        EXPECT_EQ(move(disk / "fitting"), std::nullopt);
        EXPECT_EQ(originsIn(trash), Origins{(disk / "fitting").string()});

        std::stop_source stop;
        std::ofstream(disk / "small") << std::string(10'000, 'x');
        const auto end = [&](std::int64_t, std::int64_t) { stop.request_stop(); };
        EXPECT_EQ(move(FileURL((disk / "small").string()), end, stop.get_token()), TrashError::stopped);
        EXPECT_EQ(fs::file_size(disk / "small"), 10'000U);

        const auto write = [&](std::int64_t, std::int64_t) { std::ofstream(disk / "small", std::ios::app) << "more"; };
        EXPECT_EQ(move(FileURL((disk / "small").string()), write), TrashError::changedMeanwhile);
        EXPECT_TRUE(isThere(disk / "small"));

        const auto swap = [&](std::int64_t, std::int64_t) {
            fs::rename(disk / "small", disk / "small, moved");
            std::ofstream(disk / "small") << "another";
        };
        EXPECT_EQ(move(FileURL((disk / "small").string()),
                       [&](std::int64_t done, std::int64_t all) {
                           if (done * 2 == all) {
                               swap(done, all);
                           }
                       }),
                  TrashError::changedMeanwhile);
        EXPECT_EQ(contentOf(disk / "small"), "another");
        EXPECT_EQ(originsIn(trash), Origins{(disk / "fitting").string()}) << "nothing is left of all these";
    });
}
