// The Trash at the top of another file system, what mounts forbid, and disks that are full or odd.

#include "Desktop/TrashFixture.h"
#include "support/FuseDisk.h"

#include <cerrno>

using namespace trashtest;  // NOLINT(google-build-using-namespace)

namespace {

const std::string user = std::to_string(geteuid());

}  // namespace

class TrashOnVolume : public TrashTest, public testing::WithParamInterface<const char*> {
protected:
    const std::string kind = GetParam();
    const fs::path own = disk / (".Trash-" + user);
};

// The disks of people, and the one file system made of nothing that file managers take for one.
INSTANTIATE_TEST_SUITE_P(Kinds, TrashOnVolume, testing::Values("ext4", "xfs", "btrfs", "vfat", "ramfs"));

TEST_P(TrashOnVolume, TakesWhatLiesOnTheDisk) {
    onFileSystem(kind, disk, [this] {
        const bool isPlain = kind == "vfat";
        Origins expected;
        for (const std::string& name :
             {std::string(isPlain ? "50% é" : "50% é\n\xff"), std::string(isPlain ? 200 : 255, 'n')}) {
            for (int i = 0; i < 2; ++i) {
                EXPECT_EQ(move(write(disk / "sub" / name)), std::nullopt) << name;
                expected.insert("sub/" + name);
            }
        }
        EXPECT_EQ(originsIn(own), expected);
        EXPECT_TRUE(isPlain || modeOf(own) == 0700);
        EXPECT_FALSE(isThere(trash));

        write(disk / "tree/inner/file");
        EXPECT_EQ(move(disk / "tree"), std::nullopt);
        EXPECT_TRUE(contentOf(own / "directorysizes").ends_with(" tree\n"));
        for (const char* name : {"", "files", "info", "files/tree", "files/tree/inner/file", "info/tree.trashinfo"}) {
            expectRefused(own / name, TrashError::ofTrash);
        }
        expectRefused(disk, TrashError::mounted);
    });
}

TEST_P(TrashOnVolume, UsesTheSharedTrashOnlyIfItIsSafe) {
    if (kind == "vfat") {
        GTEST_SKIP() << "it has no permissions and no links";
    }
    onFileSystem(kind, disk, [this] {
        const fs::path shared = disk / ".Trash";
        fs::create_directories(shared);
        EXPECT_EQ(move(write(disk / "no sticky bit")), std::nullopt);
        EXPECT_EQ(originsIn(own), Origins{"no sticky bit"});

        fs::permissions(shared, fs::perms::all | fs::perms::sticky_bit);
        EXPECT_EQ(move(write(disk / "sticky")), std::nullopt);
        EXPECT_EQ(originsIn(shared / user), Origins{"sticky"});

        fs::rename(shared, disk / "real");
        fs::create_symlink("real", shared);
        EXPECT_EQ(move(write(disk / "link")), std::nullopt);
        EXPECT_EQ(originsIn(own), (Origins{"no sticky bit", "link"}));

        // Nor is one that somebody else could have laid out to be filled.
        fs::rename(own, disk / "elsewhere");
        fs::create_symlink("elsewhere", own);
        EXPECT_EQ(move(write(disk / "own link")), std::nullopt);
        EXPECT_EQ(originsIn(trash), Origins{disk / "own link"}) << "copied home instead";
    });
}

TEST_F(TrashTest, RefusesWhenTheHomeIsFullOrHasNoInodes) {
    inPrivateMounts([this] {
        for (const auto& [options, error] :
             {std::pair("size=128k", TrashError::full), std::pair("nr_inodes=12", TrashError::noInodes)}) {
            ASSERT_EQ(mount("disk", home.c_str(), "tmpfs", 0, options), 0);
            const fs::path file = make("file", "precious");
            make("sub/inside", "precious too");
            const auto filling = [this](int i) { return home / ("filling" + std::to_string(i)); };
            for (int i = 0; i < 20; ++i) {
                write(filling(i), std::string(1 << 16U, 'x'));
            }
            EXPECT_EQ(move(file), error);
            EXPECT_EQ(move(folder / "sub"), error);
            EXPECT_EQ(contentOf(file), "precious");
            EXPECT_EQ(contentOf(folder / "sub/inside"), "precious too");
            EXPECT_EQ(originsIn(trash), Origins{});
            for (int i = 0; i < 20; ++i) {
                fs::remove(filling(i));
            }
            EXPECT_EQ(move(file), std::nullopt);
            EXPECT_EQ(originsIn(trash), Origins{file});
            ASSERT_EQ(umount2(home.c_str(), MNT_DETACH), 0);
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

    /// Everything on the disk outside its Trash.
    [[nodiscard]] std::set<fs::path> rest() const {
        std::set<fs::path> names;
        for (const fs::path& entry : entriesOf(disk)) {
            names.insert(entry.filename());
        }
        names.erase(own.filename());
        return names;
    }

    FuseDisk odd{disk};
    const fs::path own = disk / (".Trash-" + user);
};

TEST_F(OddDiskTrash, TakesNamesOfAnyLengthAndGivesThemBack) {
    const std::string start(31, 's');
    const std::string euros = QStringLiteral("€").repeated(255).toStdString();
    write(disk / start);
    for (const std::string& name : {std::string(256, 'a'), std::string(287, 's'), euros, std::string(1000, 'x')}) {
        const fs::path path = write(disk / name, name);
        EXPECT_EQ(move(path), std::nullopt) << name.size();
        EXPECT_EQ(rest(), (std::set<fs::path>{"otra", start})) << name.size();
        EXPECT_EQ(originsIn(own), Origins{name});
        EXPECT_EQ(contentOf(onlyItemIn(own)), name);
        fs::rename(onlyItemIn(own), path);
        fs::remove(path);
        fs::remove_all(own);
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
    const fs::path changing = write(disk / "cambiante");
    odd.set(FuseDisk::Habit::changeInodes);
    EXPECT_EQ(move(changing), TrashError::changed);
    EXPECT_EQ(rest(), (std::set<fs::path>{"otra", "ilegible", "cambiante"}));
    EXPECT_EQ(originsIn(own), Origins{});
    EXPECT_EQ(originsIn(trash), Origins{});
}

TEST_F(OddDiskTrash, LeavesNoHalfWrittenNote) {
    EXPECT_TRUE(moveWithShortWrites(disk / "otra")) << "there are no files without a name on this disk";
    EXPECT_EQ(contentOf(disk / "otra"), "content");
    EXPECT_EQ(originsIn(own), Origins{});
}

}  // namespace
