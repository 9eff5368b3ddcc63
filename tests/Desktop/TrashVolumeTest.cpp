// The Trash at the top of another file system, what mounts forbid, and disks that are full or odd.

#include "Desktop/TrashFixture.h"
#include "Foundation/OpenPath.h"
#include "Trash/SafeRename.h"
#include "support/FuseDisk.h"

#include <fcntl.h>

#include <cerrno>

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
        expectRefused(disk, TrashError::mounted);
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
            make("sub/inside");
            for (int i = 0; i < 20; ++i) {
                write(home / ("filling" + std::to_string(i)), std::string(1 << 16U, 'x'));
            }
            const std::string before = portraitOf(folder);
            EXPECT_EQ(move(file), error);
            EXPECT_EQ(move(folder / "sub"), error);
            EXPECT_EQ(portraitOf(folder), before);
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

TEST_F(TrashTest, CopiesOutOfSubvolumes) {
    onFileSystem("btrfs", disk, [&] {
        ASSERT_TRUE(runInShell("btrfs subvolume create '" + (disk / "sub").string() + "' >/dev/null"));
        write(disk / "sub/tree/file");
        EXPECT_EQ(move(disk / "sub/tree"), std::nullopt);
        EXPECT_EQ(originsIn(trash), Origins{disk / "sub/tree"});
        EXPECT_EQ(contentOf(trash / "files/tree/file"), "content");
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

TEST_F(OddDiskTrash, TakesNamesOfAnyLengthAndGivesThemBack) {
    const std::string start(31, 's');
    const std::string euros = QStringLiteral("€").repeated(255).toStdString();
    write(disk / start);
    for (const std::string& name : {std::string(256, 'a'), std::string(287, 's'), euros, std::string(1000, 'x')}) {
        const fs::path path = write(disk / name, name);
        EXPECT_EQ(move(path), std::nullopt) << name.size();
        EXPECT_FALSE(isThere(path));
        EXPECT_TRUE(isThere(disk / start));
        EXPECT_EQ(originsIn(diskTrash), Origins{name});
        EXPECT_EQ(contentOf(onlyItemIn(diskTrash)), name);
        fs::rename(onlyItemIn(diskTrash), path);
        fs::remove(path);
        fs::remove_all(diskTrash);
    }
    EXPECT_EQ(originsIn(trash), Origins{});
}

TEST_F(OddDiskTrash, RefusesWhatItCannotKnow) {
    const FileURL silent(write(disk / "ilegible").string());
    const std::optional<FileStatus> status = fileStatus(silent);
    ASSERT_TRUE(status);
    odd.failStatus("ilegible", EIO);
    EXPECT_EQ(mover.move(silent, status->identity), TrashError::diskError);
    EXPECT_EQ(mover.refusal(silent), TrashError::diskError);

    // Nobody can say whether it is still the same.
    odd.set(FuseDisk::Habit::changeInodes);
    EXPECT_EQ(move(disk / "otra"), TrashError::changed);
    EXPECT_EQ(entriesOf(disk).size(), 2U) << "both, and no Trash";
}

TEST_F(OddDiskTrash, LeavesNoHalfWrittenNote) {
    // There are no files without a name on this disk.
    expectNoHalfWrittenNote(disk / "otra", diskTrash);
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
