#include "Desktop/PrivateMounts.h"
#include "Desktop/VisibleDisks.h"
#include "support/NamedCase.h"
#include "support/TemporaryFolder.h"

#include <sys/stat.h>

#include <gtest/gtest.h>

#include <fstream>
#include <ostream>

namespace {

/// The mount table of one machine and what a person would call its disks: where each is mounted, the best place first.
struct Machine {
    const char* what;
    const char* mountinfo;
    std::vector<std::string> visible;
    const char* fstab = "";

    friend std::ostream& operator<<(std::ostream& stream, const Machine& machine) { return stream << machine.what; }
};

const Machine machines[] = {
    {"a laptop with /home apart, EFI and snaps",
     "22 29 0:20 / /sys rw - sysfs sysfs rw\n"
     "23 29 0:21 / /proc rw - proc proc rw\n"
     "24 29 0:5 / /dev rw - devtmpfs udev rw\n"
     "26 29 0:23 / /run rw - tmpfs tmpfs rw\n"
     "29 1 259:2 / / rw - ext4 /dev/nvme0n1p2 rw\n"
     "30 24 0:25 / /dev/shm rw - tmpfs tmpfs rw\n"
     "35 23 0:30 / /proc/sys/fs/binfmt_misc rw - autofs systemd-1 rw\n"
     "60 29 7:0 / /snap/core22/1380 ro - squashfs /dev/loop0 ro\n"
     "61 29 7:1 / /var/lib/snapd/snap/hello/42 ro - squashfs /dev/loop1 ro\n"
     "70 29 259:1 / /boot/efi rw - vfat /dev/nvme0n1p1 rw\n"
     "71 29 259:3 / /home rw - ext4 /dev/nvme0n1p3 rw\n"
     "90 26 0:50 / /run/user/1000 rw - tmpfs tmpfs rw\n"
     "91 90 0:51 / /run/user/1000/gvfs rw - fuse.gvfsd-fuse gvfsd-fuse rw,user_id=1000\n"
     "92 90 0:52 / /run/user/1000/doc rw - fuse.portal portal rw,user_id=1000\n"
     "95 29 0:60 / /tmp/.mount_Editorx1 ro - fuse.Editor.AppImage Editor.AppImage ro,user_id=1000\n",
     {"/", "/home"}},
    {"btrfs with subvolumes, its top mounted for snapshots",
     "29 1 0:26 /@ / rw - btrfs /dev/mapper/luks-5f rw,subvol=/@\n"
     "40 29 0:26 /@home /home rw - btrfs /dev/mapper/luks-5f rw,subvol=/@home\n"
     "41 29 0:26 /@log /var/log rw - btrfs /dev/mapper/luks-5f rw,subvol=/@log\n"
     "42 29 0:26 / /mnt/top rw - btrfs /dev/mapper/luks-5f rw,subvol=/\n"
     "43 29 0:31 /@data /srv/data rw - btrfs /dev/sdb1 rw,subvol=/@data\n"
     "44 29 0:31 /@data/photos /fotos rw - btrfs /dev/sdb1 rw,subvol=/@data/photos\n"
     "45 29 0:31 / /run/backup/source rw - btrfs /dev/sdb1 rw,subvol=/\n",
     {"/ or /mnt/top or /home or /var/log", "/fotos or /srv/data"}},
    {"LVM, a bind mount of its /home and a disk that is mounted twice",
     "29 1 253:0 / / rw - xfs /dev/mapper/vg-root rw\n"
     "30 29 253:1 / /home rw - xfs /dev/mapper/vg-home rw\n"
     "31 29 253:1 /ana/www /srv/www rw - xfs /dev/mapper/vg-home rw\n"
     "32 29 8:1 / /boot rw - ext4 /dev/sda1 rw\n"
     "33 29 8:33 / /mnt/media/long rw - ext4 /dev/sdc1 rw\n"
     "34 29 8:49 / /other rw - ext4 /dev/sdd1 rw\n"
     "35 29 8:33 / /data rw - ext4 /dev/sdc1 rw\n",
     {"/", "/home or /srv/www", "/other", "/data or /mnt/media/long"}},
    {"a container",
     "100 1 0:90 / / rw - overlay overlay rw,lowerdir=/l\n"
     "101 100 0:91 / /proc rw - proc proc rw\n"
     "102 100 0:92 / /dev rw - tmpfs tmpfs rw\n"
     "103 100 8:1 /containers/x/hosts /etc/hosts rw - ext4 /dev/sda1 rw\n"
     "104 100 8:1 /volumes/db/_data /var/lib/database rw - ext4 /dev/sda1 rw\n"
     "105 100 0:95 / /dev/mqueue rw - mqueue mqueue rw\n",
     {"/", "/etc/hosts or /var/lib/database"}},
    {"a live system on a USB stick",
     "20 1 0:30 / / rw - overlay overlay rw\n"
     "21 20 8:17 / /run/live/medium ro - iso9660 /dev/sdb1 ro\n"
     "22 20 7:0 / /run/live/rootfs/filesystem.squashfs ro - squashfs /dev/loop0 ro\n"
     "23 20 7:0 / /rofs ro - squashfs /dev/loop0 ro\n"
     "24 20 0:31 / /tmp rw - tmpfs tmpfs rw\n",
     {"/"}},
    {"servers and what users mount",
     "29 1 8:2 / / rw - ext4 /dev/sda2 rw\n"
     "30 29 0:50 / /net/music rw - nfs4 nas:/export/music rw\n"
     "31 29 0:51 / /home/ana/music rw - nfs4 nas:/export/music rw\n"
     "32 29 0:52 / /mnt/office rw - cifs //office/files rw\n"
     "33 29 0:53 / /home/ana/server rw - fuse.sshfs ana@host:/ rw,user_id=1000\n"
     "34 29 0:54 / /home/ana/secret rw - fuse.gocryptfs /home/ana/.secret rw,user_id=1000\n"
     "35 29 0:55 / /pool rw - fuse.mergerfs d1:d2 rw\n"
     "36 29 0:56 / /var/lib/lxcfs rw - fuse.lxcfs lxcfs rw\n"
     "37 29 8:97 / /mnt/windows rw - fuseblk /dev/sdg1 rw,user_id=0\n"
     "38 29 0:57 / /dav rw - fuse https://cloud.example/dav rw\n"
     "39 29 0:58 / /mnt/auto rw - autofs /etc/auto.misc rw\n",
     {"/", "/net/music or /home/ana/music", "/mnt/office", "/home/ana/server", "/mnt/windows", "/dav"}},
    {"USB sticks, a CD and images that a person has mounted",
     "29 1 8:2 / / rw - ext4 /dev/sda2 rw\n"
     "50 29 8:17 / /media/ana/Mi\\040disco rw - vfat /dev/sdb1 rw\n"
     "51 29 8:33 / /run/media/ana/TRABAJO rw - exfat /dev/sdc1 rw\n"
     "52 29 11:0 / /media/cdrom0 ro - iso9660 /dev/sr0 ro\n"
     "53 29 7:8 / /mnt/image rw - ext4 /dev/loop8 rw\n"
     "54 29 7:9 / /media/ana/archive ro - squashfs /dev/loop9 ro\n",
     {"/", "/media/ana/Mi disco", "/run/media/ana/TRABAJO", "/media/cdrom0", "/mnt/image", "/media/ana/archive"}},
    {"ZFS: one pool for the system, one for data",
     "29 1 0:27 / / rw - zfs rpool/ROOT/debian rw\n"
     "30 29 0:40 / /home rw - zfs rpool/home rw\n"
     "31 29 0:41 / /boot rw - zfs bpool/BOOT/debian rw\n"
     "32 29 0:42 / /tank/films rw - zfs tank/films rw\n"
     "33 29 0:43 / /tank rw - zfs tank rw\n",
     {"/ or /home", "/tank"}},
    {"ZFS: snapshots, one of them mounted at a short path",
     "29 1 8:2 / / rw - ext4 /dev/sda2 rw\n"
     "30 29 0:40 / /s ro - zfs tank@old ro\n"
     "31 29 0:41 / /tank/films rw - zfs tank/films rw\n"
     "32 31 0:42 / /tank/films/.zfs/snapshot/daily ro - zfs tank/films@daily ro\n"
     "33 29 0:43 / /tankard rw - zfs tankard/home rw\n",
     {"/", "/tank/films or /s or /tank/films/.zfs/snapshot/daily", "/tankard"}},
    {"a hand-held console, and what is called alike",
     "29 1 0:26 / / ro - btrfs /dev/nvme0n1p4 ro\n"
     "30 29 259:6 / /var rw - ext4 /dev/nvme0n1p6 rw\n"
     "31 29 0:40 / /etc rw - overlay overlay rw,lowerdir=/etc\n"
     "32 29 259:8 / /home rw - ext4 /dev/nvme0n1p8 rw\n"
     "33 29 259:8 /.steamos/offload/opt /opt rw - ext4 /dev/nvme0n1p8 rw\n"
     "34 29 259:1 / /esp rw - vfat /dev/nvme0n1p1 rw\n"
     "35 29 259:2 / /efi rw - vfat /dev/nvme0n1p2 rw\n"
     "36 29 259:3 / /recovery rw - vfat /dev/nvme0n1p3 rw\n"
     "37 29 179:1 / /run/media/mmcblk0p1 rw - ext4 /dev/mmcblk0p1 rw\n"
     "38 29 8:1 / /especial rw - ext4 /dev/sda1 rw\n"
     "39 29 8:2 / /recovery-disk rw - ext4 /dev/sda2 rw\n",
     {"/", "/var", "/home or /opt", "/run/media/mmcblk0p1", "/especial", "/recovery-disk"}},
    {"FUSE without a type of its own",
     "29 1 8:2 / / rw - ext4 /dev/sda2 rw\n"
     "30 29 0:50 / /home/ana/plain rw - fuse gocryptfs rw,user_id=1000\n"
     "31 29 0:51 / /home/ana/again rw - fuse bindfs#/data rw,user_id=1000\n"
     "32 29 0:52 / /home/ana/tool ro - fuse Editor.AppImage ro,user_id=1000\n"
     "33 29 0:53 / /var/lib/lxcfs rw - fuse lxcfs rw\n"
     "34 29 0:54 / /home/ana/server rw - fuse sshfs#ana@host:/ rw,user_id=1000\n"
     "35 29 0:55 / /home/ana/cloud rw - fuse cloud:gocryptfs rw,user_id=1000\n"
     "36 29 0:56 / /home/ana/other rw - fuse /dev/fuse rw,user_id=1000\n"
     "37 29 8:33 / /home/ana/stick rw - fuseblk /dev/sdc1 rw,user_id=1000\n",
     {"/", "/home/ana/server", "/home/ana/cloud", "/home/ana/other", "/home/ana/stick"}},
    {"marked hidden in the table, in fstab, and a part that is",
     "29 1 8:2 / / rw - ext4 /dev/sda2 rw,x-gvfs-hide\n"
     "30 29 8:3 / /data rw - ext4 /dev/sda3 rw\n"
     "31 29 8:3 /sub /srv/sub rw - ext4 /dev/sda3 rw\n"
     "32 29 8:4 / /photos rw,x-gvfs-hide - ext4 /dev/sda4 rw\n"
     "33 29 8:5 / /films rw - ext4 /dev/sda5 rw\n",
     {"/", "/films"},
     "/dev/sda3 /data ext4 defaults,x-gvfs-hide 0 2\n"},
    {"mounts that cover others, and lines that make no sense",
     "1 1 0:1 / / rw - rootfs rootfs rw\n"
     "29 1 8:2 / / rw - ext4 /dev/sda2 rw\n"
     "garbage\n"
     "30 29 8:17 / /mnt/stick rw - vfat /dev/sdb1 rw\n"
     "31 29 8:33 / /mnt rw - ext4 /dev/sdc1 rw\n"
     "32 29 8:49 / /data rw - ext4 /dev/sdd1 rw\n"
     "33 29 0:70 / /data rw - tmpfs tmpfs rw\n",
     {"/", "/mnt"}},
    {"a root that is a folder of a disk",
     "50 29 0:21 / /proc rw - proc proc rw\n"
     "51 29 8:17 / /media/stick rw - vfat /dev/sdb1 rw\n",
     {"/", "/media/stick"}},
};

class VisibleDisks : public testing::TestWithParam<Machine> {};

TEST_P(VisibleDisks, AreWhatAPersonWouldCallADisk) {
    const TemporaryFolder folder;
    folder.text("mountinfo", GetParam().mountinfo);
    folder.text("fstab", GetParam().fstab);
    const auto table = readMountTable(folder.path("mountinfo").c_str(), folder.path("fstab").c_str());
    ASSERT_TRUE(table.has_value());
    std::vector<std::string> places;
    for (const std::vector<Mount>& mounts : visibleDisks(*table)) {
        std::string& place = places.emplace_back();
        for (const Mount& mount : mounts) {
            place += (place.empty() ? "" : " or ") + mount.target;
        }
    }
    EXPECT_EQ(places, GetParam().visible);
}

INSTANTIATE_TEST_SUITE_P(Machines, VisibleDisks, testing::ValuesIn(machines), caseName<Machine>);

TEST(MountTable, HonoursWhatTheMountUtilityNoted) {
    const TemporaryFolder folder;
    folder.text("mountinfo",
                "29 1 8:2 / / rw - ext4 /dev/sda2 rw\n"
                "30 29 8:3 / /data rw - ext4 /dev/sda3 rw\n"
                "31 29 8:4 / /more rw - ext4 /dev/sda4 rw\n");
    folder.text("fstab", "");
    inPrivateMounts([&] {
        if (mount("tmpfs", "/run", "tmpfs", 0, nullptr) != 0 || mkdir("/run/mount", 0755) != 0) {
            impossibleHere();
        }
        std::ofstream("/run/mount/utab") << "SRC=/dev/sda3 TARGET=/data ROOT=/ OPTS=x-gvfs-hide\n";
        const auto table = readMountTable(folder.path("mountinfo").c_str(), folder.path("fstab").c_str());
        ASSERT_TRUE(table.has_value());
        ASSERT_EQ(table->size(), 3U);
        EXPECT_FALSE(table->at(0).isMarkedHidden);
        EXPECT_TRUE(table->at(1).isMarkedHidden);
        EXPECT_FALSE(table->at(2).isMarkedHidden);
    });
}

TEST(MountTable, TellsWhatHoldsAMount) {
    const TemporaryFolder folder;
    folder.text("mountinfo",
                "29 1 8:2 / / rw - ext4 /dev/sda2 rw\n"
                "30 29 8:3 / /a/Mi\\040disco rw - ext4 /dev/sda3 rw\n");
    const auto table = readMountTable(folder.path("mountinfo").c_str());
    ASSERT_TRUE(table.has_value());
    for (const char* const path : {"/", "/a", "/a/Mi disco"}) {
        EXPECT_TRUE(holdsMount(path, *table)) << path;
    }
    for (const char* const path : {"/b", "/a/Mi", "/a/Mi disco/inside", "/a/Mi disco 2"}) {
        EXPECT_FALSE(holdsMount(path, *table)) << path;
    }
}

TEST(MountTable, MayBeMissing) {
    EXPECT_EQ(readMountTable("/nowhere/mountinfo"), std::nullopt);
}

}  // namespace
