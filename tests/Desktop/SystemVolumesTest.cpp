#include "Desktop/PrivateMounts.h"
#include "Desktop/SystemVolumes.h"
#include "Desktop/XdgUserFolders.h"
#include "support/TemporaryFolder.h"

#include <fcntl.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>

namespace {

Mount mountAt(const std::string& target, const std::string& type, const std::string& source) {
    Mount mount;
    mount.target = target;
    mount.type = type;
    mount.source = source;
    return mount;
}

const Mount* find(const std::vector<Mount>& mounts, const std::string& target) {
    const auto found =
        std::find_if(mounts.begin(), mounts.end(), [&](const Mount& mount) { return mount.target == target; });
    return found == mounts.end() ? nullptr : &*found;
}

int threads() {
    return static_cast<int>(std::distance(std::filesystem::directory_iterator("/proc/self/task"), {}));
}

TEST(SystemVolumes, TellWhatTheKernelTellsOfTheRoot) {
    SystemVolumes volumes;
    const auto mounts = volumes.visibleMounts();
    ASSERT_TRUE(mounts.has_value());
    ASSERT_NE(find(*mounts, "/"), nullptr);
    const auto values = volumes.values({*find(*mounts, "/"), mountAt("/nowhere", "ext4", "/dev/none")});
    ASSERT_EQ(values.size(), 2U);
    ASSERT_TRUE(values[0].has_value());
    struct statvfs status {};
    ASSERT_EQ(statvfs("/", &status), 0);
    EXPECT_EQ(values[0]->total, static_cast<std::int64_t>(status.f_blocks * status.f_frsize));
    EXPECT_FALSE(values[0]->name.value_or(QString()).isEmpty()) << "a label, or the system's name";
    EXPECT_FALSE(values[1].has_value());
}

TEST(SystemVolumes, ReadALabelAndNoticeThatAVolumeIsGone) {
    const TemporaryFolder folder;
    folder.folder("disk");
    folder.text("image", "");
    std::filesystem::resize_file(folder.path("image"), 8 << 20);
    const std::optional<bool> passed = withPrivateMounts([&] {
        const std::string make = "PATH=$PATH:/sbin:/usr/sbin; mkfs.ext4 -q -L 'Copias de Ñ' '" + folder.path("image") +
                                 "' && mount -o loop '" + folder.path("image") + "' '" + folder.path("disk") +
                                 "' 2>/dev/null";
        if (std::system(make.c_str()) != 0) {  // NOLINT
            _exit(77);
        }
        SystemVolumes volumes;
        const auto mounts = volumes.visibleMounts();
        const Mount* const disk = find(*mounts, folder.path("disk"));
        ASSERT_NE(disk, nullptr);
        const auto values = volumes.values({*disk});
        ASSERT_TRUE(values[0].has_value());
        EXPECT_EQ(values[0]->name, QStringLiteral("Copias de Ñ"));
        struct statvfs status {};
        ASSERT_EQ(statvfs(disk->target.c_str(), &status), 0);
        EXPECT_EQ(values[0]->total, static_cast<std::int64_t>(status.f_blocks * status.f_frsize));
        EXPECT_EQ(values[0]->available, static_cast<std::int64_t>(status.f_bavail * status.f_frsize));
        EXPECT_LT(*values[0]->available, static_cast<std::int64_t>(status.f_bfree * status.f_frsize));

        ASSERT_EQ(umount(disk->target.c_str()), 0);
        EXPECT_FALSE(volumes.values({*disk})[0].has_value()) << "not the disk below in its place";
    });
    if (!passed) {
        GTEST_SKIP() << "nobody may mount a disk here";
    }
    EXPECT_TRUE(*passed);
}

TEST(SystemVolumes, DoNotWaitForAMountThatNeverAnswers) {
    const TemporaryFolder folder;
    folder.folder("silent");
    const std::optional<bool> passed = withPrivateMounts([&] {
        const int server = open("/dev/fuse", O_RDWR | O_CLOEXEC);
        const std::string options = "fd=" + std::to_string(server) +
                                    ",rootmode=40000,user_id=" + std::to_string(geteuid()) +
                                    ",group_id=" + std::to_string(getegid());
        const std::string target = folder.path("silent");
        if (server < 0 || mount("silent", target.c_str(), "fuse.sshfs", 0, options.c_str()) != 0) {
            _exit(77);
        }
        SystemVolumes volumes;
        const auto mounts = volumes.visibleMounts();
        const Mount* const silent = find(*mounts, target);
        ASSERT_NE(silent, nullptr);
        int afterFirst = 0;
        for (int round = 0; round < 5; ++round) {
            const auto values = volumes.values({*silent, *find(*mounts, "/")});
            EXPECT_FALSE(values[0].has_value());
            EXPECT_TRUE(values[1].has_value());
            afterFirst = round == 0 ? threads() : afterFirst;
        }
        // Threads that have answered take a moment to end.
        for (int patience = 100; threads() > afterFirst && patience > 0; --patience) {
            usleep(20'000);
        }
        EXPECT_LE(threads(), afterFirst) << "only the first question still waits";
        close(server);
    });
    if (!passed) {
        GTEST_SKIP() << "nobody may mount here";
    }
    EXPECT_TRUE(*passed);
}

TEST(SystemVolumes, LeaveOutAFuseFileSystemThatRepeatsADisk) {
    SystemVolumes volumes;
    const auto values = volumes.values({mountAt("/", "ext4", "/dev/sda2"), mountAt("/", "fuse.layer", "layer")});
    EXPECT_TRUE(values[0].has_value());
    EXPECT_FALSE(values[1].has_value());
}

TEST(XdgUserFolders, ReadUserDirsAnewEachTime) {
    const std::string file = qgetenv("XDG_CONFIG_HOME").toStdString() + "/user-dirs.dirs";
    const FileURL home(qgetenv("HOME").toStdString());
    const auto write = [&](const std::string& text) {
        std::ofstream stream(file);
        stream << text;
    };
    XdgUserFolders folders;
    write(
        "# comment\nXDG_MUSIC_DIR=\"$HOME/Música\"\nXDG_VIDEOS_DIR=\"/disk/v\xED"
        "deos\"\nXDG_PICTURES_DIR=broken\n"
        "XDG_DOWNLOAD_DIR=\"$HOME/\"\n");
    const UserFolderPaths first = folders.paths();
    EXPECT_EQ(first.home, home);
    EXPECT_EQ(first.music, home.appendingPathComponent("Música"));
    EXPECT_EQ(first.videos, FileURL("/disk/v\xED"
                                    "deos"));
    EXPECT_EQ(first.pictures, std::nullopt);
    EXPECT_EQ(first.downloads.value_or(home), home) << "switched off";
    write("XDG_MUSIC_DIR=\"$HOME/Discos\"\n");
    EXPECT_EQ(folders.paths().music, home.appendingPathComponent("Discos"));
    std::filesystem::remove(file);
}

}  // namespace
