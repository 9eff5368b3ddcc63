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
    write(tree / "file", std::string(100'000, 'x'));
    write(tree / "empty", "");
    write(tree / "sub/name\n\xff%41");
    fs::create_directories(tree / "sub/closed to others");
    fs::create_hard_link(tree / "file", tree / "sub/again");
    fs::create_hard_link(tree / "sub/name\n\xff%41", tree / "twice");
    fs::create_symlink("nowhere", tree / "dangling");
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
        (void)setxattr((tree / name).c_str(), "user.empty", "", 0, 0);
    }
    // The user may write, as the mask allows: version 2, then tag, permissions and id of each entry.
    const std::string list(
        "\x02\0\0\0\x01\0\x06\0\xff\xff\xff\xff\x02\0\x06\0\x7b\0\0\0\x04\0\x04\0\xff\xff\xff\xff"
        "\x10\0\x06\0\xff\xff\xff\xff\x20\0\x04\0\xff\xff\xff\xff",
        44);
    (void)setxattr((tree / "file").c_str(), "system.posix_acl_access", list.data(), list.size(), 0);
    chmod((tree / "empty").c_str(), 0400);
    chmod((tree / "sub/closed to others").c_str(), 0700);
    if (geteuid() == 0) {
        ASSERT_EQ(lchown((tree / "dangling").c_str(), 12, 34), 0);
        ASSERT_EQ(chown((tree / "empty").c_str(), 12, 34), 0);
    }
    for (const char* name : {"dangling", "file", "sub", "pipe", ""}) {
        const timespec times[] = {{1'000'000'000, 0}, {1'234'567'890, 123'456'789}};
        ASSERT_EQ(utimensat(AT_FDCWD, (tree / name).c_str(), times, AT_SYMLINK_NOFOLLOW), 0);
    }
}

}  // namespace

TEST_F(TrashTest, CopiesWholeWhatNoRenameReaches) {
    onFileSystem("tmpfs", disk, [&] {
        // On the home's own file system, but mounted a second time.
        const fs::path bound = home / "bound";
        fs::create_directories(bound);
        ASSERT_EQ(mount(folder.c_str(), bound.c_str(), nullptr, MS_BIND, nullptr), 0);
        makeTreasure(bound / "bound tree");
        makeTreasure(disk / "tree");
        fs::create_symlink("nowhere", disk / "link");
        Origins expected;
        for (const fs::path& path : {bound / "bound tree", disk / "tree", write(disk / "single"), disk / "link"}) {
            const std::string before = portraitOf(path);
            const bool isTree = fs::is_directory(path);
            std::int64_t last = 0;
            std::int64_t total = 0;
            const auto progress = [&](std::int64_t copied, std::int64_t all) {
                EXPECT_GE(copied, last);
                last = copied;
                total = all;
            };
            ASSERT_EQ(move(path, progress), std::nullopt) << path;
            EXPECT_FALSE(isThere(path)) << path;
            EXPECT_EQ(portraitOf(trash / "files" / path.filename()), before);
            EXPECT_EQ(last, total);
            EXPECT_EQ(total >= 100'000, isTree) << path;
            EXPECT_LT(total, 1'000'000) << "holes are no bytes to copy";
            expected.insert(path);
        }
        EXPECT_EQ(originsIn(trash), expected);
        EXPECT_TRUE(contentOf(trash / "directorysizes").ends_with(" tree\n"));
        EXPECT_FALSE(isThere(diskTrash)) << "nobody would see it";
    });
}

TEST_F(TrashTest, RefusesToCopyWhatIsClosedInside) {
    onFileSystem("tmpfs", disk, [&] {
        write(disk / "tree/inner/file");
        fs::create_directories(disk / "tree/inner/empty");
        becomeOrdinary(root.path());
        const std::tuple<const char*, mode_t, std::optional<TrashError>> rows[] = {
            {"inner", 0555, TrashError::closedInside},
            {"inner", 0000, TrashError::closedInside},
            {"inner/file", 0200, TrashError::closedInside},
            {"inner/empty", 0555, std::nullopt},
        };
        for (const auto& [name, mode, error] : rows) {
            const fs::path path = disk / "tree" / name;
            chmod(path.c_str(), mode);
            EXPECT_EQ(move(disk / "tree"), error) << name;
            chmod(path.c_str(), 0755);
        }
        EXPECT_EQ(originsIn(trash), Origins{disk / "tree"});
    });
}

TEST_F(TrashTest, RefusesWhatCannotBeCopiedWhole) {
    onFileSystem("tmpfs", disk, [&] {
        // A home without room for it and a tenth more.
        ASSERT_EQ(mount("home", home.c_str(), "tmpfs", 0, "size=1m"), 0);
        EXPECT_EQ(move(write(disk / "big", std::string(1'000'000, 'x'))), TrashError::homeFull);
        EXPECT_EQ(fs::file_size(disk / "big"), 1'000'000U);
        EXPECT_EQ(move(write(disk / "fitting", std::string(800'000, 'x'))), std::nullopt);

        const fs::path small = write(disk / "small", std::string(10'000, 'x'));
        std::stop_source stop;
        const auto end = [&](std::int64_t, std::int64_t) { stop.request_stop(); };
        EXPECT_EQ(move(small, end, stop.get_token()), TrashError::stopped);
        EXPECT_EQ(fs::file_size(small), 10'000U);
        const auto append = [&](std::int64_t, std::int64_t) { std::ofstream(small, std::ios::app) << "more"; };
        EXPECT_EQ(move(small, append), TrashError::changedMeanwhile);
        EXPECT_TRUE(isThere(small));
        EXPECT_EQ(originsIn(trash), Origins{disk / "fitting"}) << "nothing is left of all these";
    });
}
