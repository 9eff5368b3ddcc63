#include "Desktop/PrivateMounts.h"
#include "Desktop/VisibleDisks.h"
#include "support/TemporaryFolder.h"

#include <sys/stat.h>

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
    const auto expectShown = [](const char* row, bool isShown) {
        const auto table = tableOf(std::string("1 / / ext4 /dev/sda2 2 / ") + row);
        ASSERT_EQ(table.size(), 2U) << row;
        EXPECT_EQ(disksIn(table), isShown ? "/, " + table[1].target : "/") << row;
    };
    for (const char* const row :
         {"/home ext4 /dev/sda3", "/especial ext4 /dev/sda1",
          // Servers and clouds.
          "/net/music nfs4 nas:/export/music", "/mnt/office cifs //office/files", "/srv/s fuse.sshfs ana@host:/",
          "/dav fuse https://cloud.example/dav", "/server fuse sshfs#ana@host:/", "/cloud fuse cloud:gocryptfs",
          // What a person has mounted.
          "/run/media/ana/TRABAJO exfat /dev/sdc1", "/media/ana/archive squashfs /dev/loop9",
          "/win fuseblk /dev/sdg1"}) {
        expectShown(row, true);
    }
    for (const char* const row :
         {// The system's own.
          "/tmp tmpfs tmpfs", "/etc overlay overlay", "/boot/efi vfat /dev/sda1", "/esp vfat /dev/sda1",
          "/efi vfat /dev/sda2", "/recovery vfat /dev/sda3", "/run/backup btrfs /dev/sdb1",
          "/mnt/auto autofs /etc/auto.misc",
          // Programs and live systems as images.
          "/snap/own ext4 /dev/loop0", "/var/lib/snapd/own ext4 /dev/loop1", "/rofs squashfs /dev/loop0",
          "/tmp/.mount_Editorx1 fuse.Editor Editor", "/tool fuse Editor.AppImage",
          // Windows onto other folders.
          "/gvfs fuse.gvfsd-fuse gvfsd-fuse", "/doc fuse.portal portal", "/var/lib/lxcfs fuse.lxcfs lxcfs",
          "/pool fuse.mergerfs d1:d2", "/plain fuse gocryptfs", "/again fuse bindfs#/data"}) {
        expectShown(row, false);
    }
}

TEST(VisibleDisks, AreFileSystemsInTheOrderOfTheirBestMounts) {
    const std::pair<const char*, const char*> rows[] = {
        {"1 /@ / btrfs /dev/a 1 /@home /home btrfs /dev/a 1 / /mnt/top btrfs /dev/a "
         "2 /@data /srv/data btrfs /dev/b 2 /@data/photos /fotos btrfs /dev/b",
         "/ or /mnt/top or /home, /fotos or /srv/data"},
        {"1 / / xfs /dev/a 2 / /home xfs /dev/b 2 /ana/www /srv/www xfs /dev/b 3 / /mnt/media ext4 /dev/c "
         "4 / /other ext4 /dev/d 3 / /data ext4 /dev/c",
         "/, /home or /srv/www, /other, /data or /mnt/media"},
        {"1 / / ext4 /dev/a 2 / /net/music nfs4 nas:/music 3 / /home/ana/music nfs4 nas:/music",
         "/, /net/music or /home/ana/music"},
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

/// As the kernel, fstab and the mount utility write them.
TEST(MountTable, IsReadWithTheMarksOfEverybody) {
    const TemporaryFolder folder;
    folder.text("mountinfo",
                "29 1 8:2 / / rw - ext4 /dev/sda2 rw,x-gvfs-hide\n"
                "30 29 8:3 / /data rw - ext4 /dev/sda3 rw\n"
                "31 29 8:3 /sub /srv/sub rw - ext4 /dev/sda3 rw\n"
                "garbage\n"
                "32 29 8:4 / /photos rw,x-gvfs-hide - ext4 /dev/sda4 rw\n"
                "33 29 8:5 / /a/Mi\\040disco rw - ext4 /dev/sda5 rw\n"
                "34 29 8:6 / /noted rw - ext4 /dev/sda6 rw\n");
    folder.text("fstab", "/dev/sda3 /data ext4 defaults,x-gvfs-hide 0 2\n");
    const auto read = [&] {
        return readMountTable(folder.path("mountinfo").c_str(), folder.path("fstab").c_str()).value();
    };
    EXPECT_EQ(disksIn(read()), "/, /a/Mi disco, /noted");
    EXPECT_TRUE(holdsMount("/a", read()));
    EXPECT_FALSE(holdsMount("/a/Mi", read()));
    inPrivateMounts([&] {
        if (mount("tmpfs", "/run", "tmpfs", 0, nullptr) != 0 || mkdir("/run/mount", 0755) != 0) {
            impossibleHere();
        }
        std::ofstream("/run/mount/utab") << "SRC=/dev/sda6 TARGET=/noted ROOT=/ OPTS=x-gvfs-hide\n";
        EXPECT_EQ(disksIn(read()), "/, /a/Mi disco");
    });
}

TEST(MountTable, MayLackTheRootOrBeMissing) {
    const TemporaryFolder folder;
    folder.text("mountinfo", "51 29 8:17 / /media/stick rw - vfat /dev/sdb1 rw\n");
    EXPECT_EQ(disksIn(readMountTable(folder.path("mountinfo").c_str()).value()), "/, /media/stick");
    EXPECT_EQ(readMountTable("/nowhere/mountinfo"), std::nullopt);
}

}  // namespace
