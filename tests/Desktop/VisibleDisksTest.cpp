#include "Desktop/VisibleDisks.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

/// Mounts written as "device root target type source".
std::vector<Mount> tableOf(const std::string& text) {
    std::vector<Mount> table;
    std::istringstream words(text);
    for (Mount mount; words >> mount.device >> mount.root >> mount.target >> mount.type >> mount.source;) {
        table.push_back(mount);
    }
    return table;
}

/// Where the disks are mounted, the best place of each first.
std::string disksIn(const std::vector<Mount>& table) {
    std::string all;
    for (const std::vector<Mount>& mounts : visibleDisks(table)) {
        for (const Mount& mount : mounts) {
            all += (all.empty() ? "" : &mount == &mounts.front() ? ", " : " or ") + mount.target;
        }
    }
    return all;
}

TEST(VisibleDisks, AreWhatAPersonWouldCallADisk) {
    const std::string disks =
        "1 / / ext4 /dev/sda2 2 / /home ext4 /dev/sda3 3 / /especial ext4 /dev/sda1 "
        // Servers and clouds.
        "4 / /net/music nfs4 nas:/export/music 5 / /srv/s fuse.sshfs ana@host:/ "
        "6 / /dav fuse https://cloud.example/dav 7 / /cloud fuse cloud:gocryptfs "
        // What a person has mounted.
        "8 / /run/media/ana/USB exfat /dev/sdc1 9 / /media/ana/iso squashfs /dev/loop9 10 / /win fuseblk /dev/sdg1 ";
    const std::string others =
        // The system's own.
        "11 / /tmp tmpfs tmpfs 12 / /boot/efi vfat /dev/sda1 13 / /esp vfat /dev/sda4 14 / /run/backup btrfs /dev/sdb1 "
        "15 / /mnt/auto autofs /etc/auto.misc "
        // Programs and live systems as images.
        "16 / /snap/own ext4 /dev/loop0 17 / /rofs squashfs /dev/loop1 18 / /tmp/.mount_Editorx1 fuse.Editor Editor "
        "19 / /tool fuse Editor.AppImage "
        // Windows onto other folders.
        "20 / /gvfs fuse.gvfsd-fuse gvfsd-fuse 21 / /doc fuse.portal portal 22 / /pool fuse.mergerfs d1:d2 "
        "23 / /plain fuse gocryptfs 24 / /again fuse bindfs#/data";
    EXPECT_EQ(disksIn(tableOf(disks + others)),
              "/, /home, /especial, /net/music, /srv/s, /dav, /cloud, /run/media/ana/USB, /media/ana/iso, /win");
}

TEST(VisibleDisks, AreFileSystemsInTheOrderOfTheirBestMounts) {
    const std::pair<const char*, const char*> rows[] = {
        {"1 /@ / btrfs /dev/a 1 /@home /home btrfs /dev/a 1 / /mnt/top btrfs /dev/a "
         "2 /@data /srv/data btrfs /dev/b 2 /@data/photos /fotos btrfs /dev/b",
         "/ or /mnt/top or /home, /fotos or /srv/data"},
        {"1 / / xfs /dev/a 2 / /home xfs /dev/b 2 /ana/www /srv/www xfs /dev/b 3 / /mnt/media ext4 /dev/c "
         "4 / /other ext4 /dev/d 3 / /data ext4 /dev/c 5 / /net/music nfs4 nas:/m 6 / /ana/m nfs4 nas:/m",
         "/, /home or /srv/www, /other, /data or /mnt/media, /ana/m or /net/music"},
        {"1 / / zfs rpool/ROOT/debian 2 / /home zfs rpool/home 3 / /s zfs tank@old 4 / /tank/films zfs tank/films "
         "5 / /tank/films/.zfs/snapshot/daily zfs tank/films@daily 6 / /tankard zfs tankard/home",
         "/ or /home, /tank/films or /s or /tank/films/.zfs/snapshot/daily, /tankard"},
        // Later mounts cover earlier ones.
        {"1 / / rootfs rootfs 2 / / ext4 /dev/a 3 / /mnt/stick vfat /dev/b 4 / /mnt ext4 /dev/c "
         "5 / /data ext4 /dev/d 6 / /data tmpfs tmpfs",
         "/, /mnt"},
    };
    for (const auto& [table, expected] : rows) {
        EXPECT_EQ(disksIn(tableOf(table)), expected);
    }
}

/// As the kernel and fstab write them.
TEST(MountTable, IsReadWithTheMarksOfEverybody) {
    const TemporaryFolder folder;
    folder.text("mountinfo",
                "29 1 8:2 / / rw - ext4 /dev/sda2 rw,x-gvfs-hide\n"
                "30 29 8:3 / /data rw - ext4 /dev/sda3 rw\n"
                "31 29 8:3 /sub /srv/sub rw - ext4 /dev/sda3 rw\n"
                "garbage\n"
                "32 29 8:4 / /photos rw,x-gvfs-hide - ext4 /dev/sda4 rw\n"
                "33 29 8:5 / /a/Mi\\040disco rw - ext4 /dev/sda5 rw\n");
    folder.text("fstab", "/dev/sda3 /data ext4 defaults,x-gvfs-hide 0 2\n");
    const auto table = readMountTable(folder.path("mountinfo").c_str(), folder.path("fstab").c_str()).value();
    EXPECT_EQ(disksIn(table), "/, /a/Mi disco");
    EXPECT_TRUE(holdsMount("/a", table));
    EXPECT_FALSE(holdsMount("/a/Mi", table));
}

TEST(MountTable, MayLackTheRootOrBeMissing) {
    const TemporaryFolder folder;
    folder.text("mountinfo", "51 29 8:17 / /media/stick rw - vfat /dev/sdb1 rw\n");
    EXPECT_EQ(disksIn(readMountTable(folder.path("mountinfo").c_str()).value()), "/, /media/stick");
    EXPECT_EQ(readMountTable("/nowhere/mountinfo"), std::nullopt);
}

}  // namespace
