// The Trash at the top of another file system, and what mounts forbid.

#include "Desktop/TrashFixture.h"

#include <sys/stat.h>

#include <fstream>

using namespace trashtest;  // NOLINT(google-build-using-namespace)

namespace {

const std::string user = std::to_string(geteuid());

}  // namespace

class TrashOnVolume : public TrashTest, public testing::WithParamInterface<const char*> {
protected:
    fs::path disk = fs::path(root.path()) / "disk";

    fs::path put(const std::string& name, const std::string& content = "content") const {
        fs::create_directories((disk / name).parent_path());
        std::ofstream(disk / name) << content;
        return disk / name;
    }
};

// The disks of people, and the one file system made of nothing that file managers take for one.
INSTANTIATE_TEST_SUITE_P(Kinds, TrashOnVolume, testing::Values("ext4", "xfs", "btrfs", "vfat", "ramfs"));

TEST_P(TrashOnVolume, TakesWhatLiesOnTheDisk) {
    onFileSystem(GetParam(), disk, [this] {
        const bool isPlain = std::string(GetParam()) == "vfat";
        const std::string odd = isPlain ? "50% é" : "50% é\n\xff";
        const fs::path own = disk / (".Trash-" + user);
        Origins expected;
        for (const std::string& name : {odd, std::string(isPlain ? 200 : 255, 'n')}) {
            for (int i = 0; i < 2; ++i) {
                EXPECT_EQ(move(put("sub/" + name)), std::nullopt) << name;
                expected.insert("sub/" + name);
            }
        }
        EXPECT_EQ(originsIn(own), expected);
        struct stat status {};
        EXPECT_EQ(stat(own.c_str(), &status), 0);
        if (!isPlain) {
            EXPECT_EQ(status.st_mode & 07777U, 0700U);
        }
        EXPECT_FALSE(isThere(trash));

        fs::create_directories(disk / "tree" / "inner");
        put("tree/inner/file");
        EXPECT_EQ(move(disk / "tree"), std::nullopt);
        EXPECT_TRUE(contentOf(own / "directorysizes").ends_with(" tree\n"));
        for (const char* name : {"", "files", "info", "files/tree", "files/tree/inner/file", "info/tree.trashinfo"}) {
            EXPECT_EQ(move(FileURL((own / name).string())), TrashError::ofTrash) << name;
            EXPECT_EQ(mover.refusal(FileURL((own / name).string())), TrashError::ofTrash) << name;
        }
        EXPECT_EQ(move(disk), TrashError::mounted);
    });
}

TEST_P(TrashOnVolume, UsesTheSharedTrashOnlyIfItIsSafe) {
    onFileSystem(GetParam(), disk, [this] {
        if (std::string(GetParam()) == "vfat") {
            return;
        }
        const fs::path shared = disk / ".Trash";
        const fs::path own = disk / (".Trash-" + user);
        fs::create_directories(shared);
        EXPECT_EQ(move(put("no sticky bit")), std::nullopt);
        EXPECT_EQ(originsIn(own), Origins{"no sticky bit"});

        fs::permissions(shared, fs::perms::all | fs::perms::sticky_bit);
        EXPECT_EQ(move(put("sticky")), std::nullopt);
        EXPECT_EQ(originsIn(shared / user), Origins{"sticky"});

        fs::rename(shared, disk / "real");
        fs::create_symlink("real", shared);
        EXPECT_EQ(move(put("link")), std::nullopt);
        EXPECT_EQ(originsIn(own), (Origins{"no sticky bit", "link"}));

        // Nor is one that somebody else could have laid out to be filled.
        fs::rename(own, disk / "elsewhere");
        fs::create_symlink("elsewhere", own);
        EXPECT_EQ(move(put("own link")), std::nullopt);
        EXPECT_EQ(originsIn(trash), Origins{(disk / "own link").string()}) << "copied home instead";
    });
}

TEST_P(TrashOnVolume, RefusesWhenTheDiskIsFull) {
    onFileSystem(GetParam(), disk, [this] {
        const std::string kind = GetParam();
        if (kind == "ramfs") {
            return;
        }
        const fs::path url = put("precious", "content");
        fs::create_directories(disk / "folder");
        const auto fill = [this] {
            std::ofstream filling(disk / "filling", std::ios::app);
            const std::string piece(std::size_t{1} << 20U, 'x');
            while (filling.write(piece.data(), static_cast<std::streamsize>(piece.size())).flush()) {
            }
            sync();
            std::ofstream rest(disk / "rest", std::ios::app);
            for (int i = 0; i < 1 << 20U && rest.put('x').flush(); ++i) {
            }
        };
        fill();
        for (const fs::path& item : {url, disk / "folder"}) {
            const std::optional<TrashError> error = move(item);
            if (error) {
                EXPECT_EQ(error, TrashError::full) << "without a Trash yet";
                EXPECT_TRUE(isThere(item));
                EXPECT_EQ(originsIn(disk / (".Trash-" + user)), Origins{});
            } else {
                EXPECT_FALSE(isThere(item)) << "some keep small things where no space is needed";
            }
        }
    });
}

TEST_F(TrashTest, RefusesWhenTheHomeIsFullOrHasNoInodes) {
    inPrivateMounts([this] {
        struct Row {
            const char* options;
            TrashError error;
        };
        for (const Row& row : {Row{"size=128k", TrashError::full}, Row{"nr_inodes=12", TrashError::noInodes}}) {
            ASSERT_EQ(mount("disk", home.c_str(), "tmpfs", 0, row.options), 0);
            fs::create_directories(folder / "sub");
            const FileURL url = make("file", "precious");
            make("sub/inside", "precious too");
            for (int i = 0;
                 i < 20 && std::ofstream(home / ("filling" + std::to_string(i))) << std::string(1 << 16U, 'x'); ++i) {
            }
            EXPECT_EQ(move(url), row.error);
            EXPECT_EQ(move(folder / "sub"), row.error);
            EXPECT_EQ(contentOf(url.path()), "precious");
            EXPECT_EQ(contentOf(folder / "sub" / "inside"), "precious too");
            EXPECT_EQ(originsIn(trash), Origins{});
            for (int i = 0; i < 20; ++i) {
                fs::remove(home / ("filling" + std::to_string(i)));
            }
            EXPECT_EQ(move(url), std::nullopt);
            EXPECT_EQ(originsIn(trash), Origins{url.path()});
            ASSERT_EQ(umount2(home.c_str(), MNT_DETACH), 0);
        }
    });
}

TEST_F(TrashTest, RefusesMountsAndWhatIsReadOnly) {
    const fs::path disk = folder / "disk";
    onFileSystem("tmpfs", disk, [&] {
        const FileURL url = make("disk/file");
        std::ofstream(folder / "bound").flush();
        ASSERT_EQ(mount(url.path().c_str(), (folder / "bound").c_str(), nullptr, MS_BIND, nullptr), 0);
        for (const fs::path& path : {disk, folder, folder / "bound"}) {
            EXPECT_EQ(move(path), TrashError::mounted) << path;
            EXPECT_EQ(mover.refusal(FileURL(path.string())), TrashError::mounted) << path;
        }
        ASSERT_EQ(mount(nullptr, disk.c_str(), nullptr, MS_REMOUNT | MS_BIND | MS_RDONLY, nullptr), 0);
        EXPECT_EQ(move(url), TrashError::readOnly);
        EXPECT_EQ(mover.refusal(url), TrashError::readOnly);
        EXPECT_EQ(contentOf(url.path()), "content");
        EXPECT_FALSE(isThere(trash));
    });
}

TEST_F(TrashTest, CopiesOutOfSubvolumes) {
    const fs::path disk = root.path("disk");
    onFileSystem("btrfs", disk, [&] {
        const std::string command = "btrfs subvolume create '" + (disk / "sub").string() + "' >/dev/null";
        ASSERT_EQ(std::system(command.c_str()), 0);  // NOLINT(cert-env33-c)
        fs::create_directories(disk / "sub" / "tree");
        std::ofstream(disk / "sub" / "tree" / "file") << "content";
        EXPECT_EQ(move(disk / "sub" / "tree"), std::nullopt);
        EXPECT_EQ(originsIn(trash), Origins{(disk / "sub" / "tree").string()});
        EXPECT_EQ(contentOf(trash / "files" / "tree" / "file"), "content");
    });
}
