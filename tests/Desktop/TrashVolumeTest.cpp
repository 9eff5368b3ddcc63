// Other file systems: the Trash at the top of one, what is copied out of the others, full and odd disks.

#include "Desktop/TrashFixture.h"
#include "Foundation/OpenPath.h"
#include "Trash/SafeRename.h"
#include "support/FuseDisk.h"
#include "support/Shortage.h"

#include <fcntl.h>

#include <cerrno>
#include <csignal>

using namespace trashtest;  // NOLINT(google-build-using-namespace)

class TrashOnVolume : public TrashTest, public testing::WithParamInterface<const char*> {};

// The disks of people, and the one file system made of nothing that file managers take for one.
INSTANTIATE_TEST_SUITE_P(Kinds, TrashOnVolume, testing::Values("ext4", "xfs", "btrfs", "vfat", "ramfs"));

TEST_P(TrashOnVolume, TakesWhatLiesOnTheDisk) {
    const std::string kind = GetParam();
    onFileSystem(kind, disk, [&] {
        const bool isPlain = kind == "vfat";
        const std::string odd(isPlain ? "50% é" : "50% é\n\xff");
        const std::string longest(isPlain ? 200 : 255, 'n');
        for (const std::string& name : {odd, longest}) {
            EXPECT_EQ(move(write(disk / "sub" / name)), std::nullopt) << name;
        }
        EXPECT_EQ(originsIn(diskTrash), (Origins{"sub/" + odd, "sub/" + longest}));
        EXPECT_TRUE(isPlain || fs::status(diskTrash).permissions() == fs::perms::owner_all);
        EXPECT_FALSE(isThere(trash));

        write(disk / "tree/inner/file");
        EXPECT_EQ(move(disk / "tree"), std::nullopt);
        EXPECT_TRUE(contentOf(diskTrash / "directorysizes").ends_with(" tree\n"));
        for (const char* name : {"", "files", "files/tree/inner/file", "info/tree.trashinfo"}) {
            expectRefused(diskTrash / name, TrashError::ofTrash);
        }
    });
}

TEST_F(TrashTest, UsesTheSharedTrashOnlyIfItIsSafe) {
    onFileSystem("ramfs", disk, [this] {
        const fs::path shared = disk / ".Trash";
        fs::create_directories(shared);
        EXPECT_EQ(move(write(disk / "no sticky bit")), std::nullopt);
        EXPECT_EQ(originsIn(diskTrash), Origins{"no sticky bit"});

        fs::permissions(shared, fs::perms::all | fs::perms::sticky_bit);
        EXPECT_EQ(move(write(disk / "sticky")), std::nullopt);
        EXPECT_EQ(originsIn(shared / std::to_string(geteuid())), Origins{"sticky"});

        fs::rename(shared, disk / "real");
        fs::create_symlink("real", shared);
        EXPECT_EQ(move(write(disk / "link")), std::nullopt);
        EXPECT_EQ(originsIn(diskTrash), (Origins{"no sticky bit", "link"}));

        // Nor is one that somebody else could have laid out to be filled.
        fs::rename(diskTrash, disk / "elsewhere");
        fs::create_symlink("elsewhere", diskTrash);
        EXPECT_EQ(move(write(disk / "own link")), std::nullopt);
        EXPECT_EQ(originsIn(trash), Origins{disk / "own link"}) << "copied home instead";
    });
}

TEST_F(TrashTest, RefusesWhenTheHomeIsFullOrHasNoInodes) {
    inPrivateMounts([this] {
        for (const auto& [options, error] :
             {std::pair("size=128k", TrashError::full), std::pair("nr_inodes=12", TrashError::noInodes)}) {
            ASSERT_EQ(mount("disk", home.c_str(), "tmpfs", 0, options), 0);
            const fs::path file = make("file");
            for (int i = 0; i < 20; ++i) {
                write(home / ("filling" + std::to_string(i)), std::string(1 << 16U, 'x'));
            }
            EXPECT_EQ(move(file), error);
            EXPECT_TRUE(isThere(file));
            EXPECT_EQ(originsIn(trash), Origins{});
        }
    });
}

TEST_F(TrashTest, RefusesMountsAndWhatIsReadOnly) {
    const fs::path mounted = folder / "disk";
    onFileSystem("tmpfs", mounted, [&] {
        const fs::path file = write(mounted / "file");
        const fs::path bound = write(folder / "bound");
        ASSERT_EQ(mount(file.c_str(), bound.c_str(), nullptr, MS_BIND, nullptr), 0);
        for (const fs::path& path : {mounted, folder, bound}) {
            expectRefused(path, TrashError::mounted);
        }
        ASSERT_EQ(mount(nullptr, mounted.c_str(), nullptr, MS_REMOUNT | MS_BIND | MS_RDONLY, nullptr), 0);
        expectRefused(file, TrashError::readOnly);
        EXPECT_FALSE(isThere(trash));
    });
}

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
    std::ofstream(tree / "sparse").seekp(3 << 20U) << "island";
    fs::resize_file(tree / "sparse", 8U << 20U);
    // Where a file system has no such attributes there is none to lose.
    (void)setxattr((tree / "file").c_str(), "user.empty", "", 0, 0);
    (void)setxattr((tree / "sub").c_str(), "user.note", "value", 5, 0);
    // Another user may write: version 2, then permissions and tag of each entry, and its id.
    const std::uint32_t list[] = {2, 0x6'0001, ~0U, 0x6'0002, 123, 0x4'0004, ~0U, 0x6'0010, ~0U, 0x4'0020, ~0U};
    (void)setxattr((tree / "file").c_str(), "system.posix_acl_access", list, sizeof list, 0);
    chmod((tree / "empty").c_str(), 0400);
    chmod((tree / "sub/closed to others").c_str(), 0700);
    for (const char* name : {"dangling", "empty"}) {
        ASSERT_TRUE(geteuid() != 0 || lchown((tree / name).c_str(), 12, 34) == 0);
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
            std::pair<std::int64_t, std::int64_t> last;
            const auto progress = [&](std::int64_t copied, std::int64_t all) { last = {copied, all}; };
            ASSERT_EQ(move(path, progress), std::nullopt) << path;
            EXPECT_FALSE(isThere(path)) << path;
            EXPECT_EQ(portraitOf(trash / "files" / path.filename()), before);
            EXPECT_EQ(last.first, last.second);
            EXPECT_LT(last.second, 1'000'000) << "holes are no bytes to copy";
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
        EXPECT_EQ(move(write(disk / "fitting", std::string(800'000, 'x'))), std::nullopt);

        const fs::path small = write(disk / "small", std::string(10'000, 'x'));
        std::stop_source stop;
        const auto end = [&](std::int64_t, std::int64_t) { stop.request_stop(); };
        EXPECT_EQ(move(small, end, stop.get_token()), TrashError::stopped);
        const auto append = [&](std::int64_t, std::int64_t) { std::ofstream(small, std::ios::app) << "more"; };
        EXPECT_EQ(move(small, append), TrashError::changedMeanwhile);
        EXPECT_TRUE(isThere(small));
        EXPECT_EQ(originsIn(trash), Origins{disk / "fitting"}) << "nothing is left of all these";
    });
}

namespace {

class OddDiskTrash : public TrashTest {
protected:
    void SetUp() override {
        if (!odd.isMounted()) {
            GTEST_SKIP() << FuseDisk::whyNot;
        }
        write(disk / "otra");
    }

    FuseDisk odd{disk};
};

TEST_F(OddDiskTrash, TakesNamesOfAnyLength) {
    // What is left of one of them by whoever cuts it after 256 bytes.
    write(disk / std::string(31, 's'), "another");
    for (const std::string& name : {std::string(256, 'a'), std::string(287, 's'), std::string(1000, 'x')}) {
        EXPECT_EQ(move(write(disk / name, name)), std::nullopt) << name.size();
        EXPECT_EQ(originsIn(diskTrash), Origins{name});
        EXPECT_EQ(contentOf(onlyItemIn(diskTrash)), name);
        fs::remove_all(diskTrash);
    }
}

TEST_F(OddDiskTrash, RefusesWhatItCannotKnow) {
    write(disk / "ilegible");
    odd.failStatus("ilegible", EIO);
    expectRefused(disk / "ilegible", TrashError::diskError);

    // Nobody can say whether it is still the same.
    odd.set(FuseDisk::Habit::changeInodes);
    EXPECT_EQ(move(disk / "otra"), TrashError::changed);
    EXPECT_EQ(entriesOf(disk).size(), 2U) << "both, and no Trash";
}

TEST_F(OddDiskTrash, LeavesNoHalfWrittenNote) {
    // A note that has a name before it is whole: there are no files without one on this disk.
    std::signal(SIGXFSZ, SIG_IGN);
    {
        const Limit bytesOfFiles(RLIMIT_FSIZE, 20);
        EXPECT_TRUE(move(disk / "otra"));
    }
    EXPECT_EQ(contentOf(disk / "otra"), "content");
    EXPECT_EQ(originsIn(diskTrash), Origins());
}

TEST_F(OddDiskTrash, ReplacesNothingWhereNoRenameHeedsThat) {
    odd.set(FuseDisk::Habit::renamePlainly);
    write(disk / "(copia)");
    write(disk / "sub/file");
    fs::create_directories(disk / "empty");
    // Somebody else may take a name after it was chosen.
    const Descriptor top = openPath(FileURL(disk.string()), O_PATH | O_DIRECTORY);
    for (const auto& [from, to] : {std::pair("sub", "empty"), std::pair("(copia)", "otra")}) {
        const FileIdentity item = fileStatus(top.number(), from)->identity;
        EXPECT_EQ(renameWithoutReplacing(top.number(), from, top.number(), to, item), EEXIST) << from;
    }
    EXPECT_EQ(move(disk / "(copia)"), std::nullopt);
    EXPECT_EQ(move(disk / "sub"), std::nullopt);
    EXPECT_EQ(originsIn(diskTrash), (Origins{"(copia)", "sub"}));
    EXPECT_EQ(entriesOf(disk).size(), 3U) << "the two others and the Trash";
    EXPECT_EQ(contentOf(diskTrash / "files/(copia)"), "content");
}

}  // namespace
