#include "Desktop/PrivateMounts.h"
#include "Desktop/SystemVolumes.h"
#include "Desktop/VisibleDisks.h"
#include "Desktop/VolumeLabel.h"
#include "Foundation/Threads.h"
#include "support/Shortage.h"
#include "support/TemporaryFolder.h"
#include "support/WaitUntil.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <map>
#include <optional>

namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

using Answers = MountedVolumes::Answers;
using Paths = std::vector<std::string>;

constexpr std::int64_t large = 500'000'000'000;

Mount mountAt(const std::string& target, const std::string& type, const std::string& source, std::uint64_t device = 1) {
    return {-1, device, "/", target, type, source};
}

/// A disk that answers when the test lets it.
struct FakeDisk {
    std::optional<VolumeValues> answer() {
        ++asked;
        isSilent.wait(true);
        return values;
    }
    void release() {
        isSilent = false;
        isSilent.notify_all();
    }

    std::optional<VolumeValues> values;
    std::atomic<int> asked = 0;
    std::atomic<bool> isSilent = false;
};

class SystemVolumesTest : public testing::Test {
protected:
    void TearDown() override {
        for (auto& [target, disk] : disks) {
            disk.release();
        }
        EXPECT_TRUE(Threads::waitForAll(20s));
    }

    /// One more disk, which says that it has `total` bytes.
    FakeDisk& add(const std::string& target, std::int64_t total = large, const std::string& type = "ext4") {
        table->push_back(mountAt(target, type, (type == "ext4" ? "/dev" : "") + target, table->size() + 1));
        disks[target].values = VolumeValues{{}, total, {}, total / 2};
        return disks[target];
    }

    /// These are the volumes that are told at once, or later. From now on an earlier question must not be answered.
    void askAndExpect(const Paths& expected, const char* why = "") {
        const auto start = std::chrono::steady_clock::now();
        answers = volumes->ask([this, number = ++questions](const Answers& later) {
            EXPECT_EQ(number, questions);
            answers = later;
        });
        shortestWait = std::min(shortestWait, std::chrono::steady_clock::now() - start);
        expectShown(expected, why);
    }
    void expectShown(const Paths& expected, const char* why = "") const {
        const auto shown = [this] {
            Paths paths;
            for (const MountedVolume& volume : answers) {
                paths.push_back(volume.url.path());
            }
            return paths;
        };
        waitUntil([&] { return shown() == expected; });
        EXPECT_EQ(shown(), expected) << why;
    }

    std::optional<std::vector<Mount>> table = std::vector<Mount>();
    std::map<std::string, FakeDisk> disks;
    std::optional<SystemVolumes> volumes{SystemVolumes::Sources{
        [this] { return table; }, [this](const Mount& mount) { return disks.at(mount.target).answer(); }}};
    int questions = 0;
    Answers answers;
    std::chrono::steady_clock::duration shortestWait = 1h;  ///< Of those in which the window did nothing else.
};

TEST_F(SystemVolumesTest, AreAskedAtTheSameTimeAndAppearWhenTheyAnswer) {
    FakeDisk& slow = add("/slow");
    FakeDisk& root = add("/");
    for (int number = 0; number < 40; ++number) {
        add("/silent" + std::to_string(number));
    }
    for (auto& [target, disk] : disks) {
        disk.isSilent = true;
    }
    add("/quick");
    askAndExpect({"/quick"}, "the root is not waited for without end");
    EXPECT_GT(shortestWait, 200ms) << "but for longer than the others";
    root.release();
    expectShown({"/", "/quick"});
    slow.release();
    expectShown({"/slow", "/", "/quick"}, "in the table's order");
}

TEST_F(SystemVolumesTest, AnswerLateToTheNewestQuestionAlone) {
    add("/");
    FakeDisk& slow = add("/slow");
    slow.isSilent = true;
    askAndExpect({"/"});
    askAndExpect({"/"});
    // A mount that comes to be while another one still waits.
    add("/new");
    askAndExpect({"/", "/new"});
    EXPECT_EQ(slow.asked, 1);
    EXPECT_LT(shortestWait, 200ms) << "what a busy machine exceeds once, but not each time";
    slow.release();
    expectShown({"/", "/slow", "/new"}, "it answers to the newest question");
    askAndExpect({"/", "/slow", "/new"});

    slow.isSilent = true;
    askAndExpect({"/", "/new"});
    volumes.reset();
    ++questions;  // Whoever is told from now on complains.
    slow.release();
    ASSERT_TRUE(Threads::waitForAll(20s));
    QCoreApplication::processEvents();
}

TEST_F(SystemVolumesTest, AreTheRootAloneWhileNoThreadIsToBeHad) {
    const FakeDisk& other = add("/other");
    add("/");
    {
        const NoThreads none;
        askAndExpect({"/"});
    }
    EXPECT_EQ(other.asked, 0) << "it might hang, and the window with it";
    askAndExpect({"/other", "/"});
}

TEST_F(SystemVolumesTest, AreAskedWhereTheyStillAre) {
    FakeDisk& root = add("/");
    add("/data/containers/db");
    FakeDisk& file = add("/etc/hosts");
    file.values.reset();
    for (const std::size_t part : {1U, 2U}) {
        table->at(part).device = 9;
        table->at(part).root = "/part";
    }
    askAndExpect({"/", "/data/containers/db"});
    EXPECT_EQ(file.asked, 1) << "it is the shorter path";

    table.reset();
    askAndExpect({"/"}, "alone when the system lists nothing");
    root.values.reset();
    askAndExpect({});
}

TEST_F(SystemVolumesTest, LeaveOutAFuseFileSystemThatRepeatsADisk) {
    constexpr std::int64_t petabyte = std::int64_t{1} << 50;
    add("/layer", large, "fuse.own");  // what it repeats comes later
    add("/");
    add("/a little off", large, "fuse").values->available = large / 2 - 63'000'000;
    add("/far off", large, "fuse.sshfs").values->available = large / 2 - 65'000'000;
    add("/cloud", petabyte, "fuse.rclone");
    add("/other cloud", petabyte, "fuse");
    add("/copy of the disk");
    askAndExpect({"/", "/far off", "/cloud", "/other cloud", "/copy of the disk"});
}

TEST(SystemVolumes, TellWhatTheKernelTells) {
    EXPECT_FALSE(SystemVolumes().ask(nullptr).empty());
    const auto valuesAt = [](const std::string& place) { return valuesOf(mountAt(place, "ext4", "")); };
    EXPECT_NE(valuesAt("/").value().name.value_or(QString()), QString()) << "the system's name";
    EXPECT_EQ(valuesAt("/proc").value().name, std::nullopt) << "which is only that of its root";
    EXPECT_EQ(valuesAt("/etc/passwd"), std::nullopt) << "a file is no disk";

    const TemporaryFolder folder;
    const std::string place = folder.path("disk");
    const auto body = [&] {
        const Mount mount = visibleDisks(currentMounts()).back().front();
        ASSERT_EQ(mount.target, place);
        const fs::space_info space = fs::space(place);
        const VolumeValues expected{QStringLiteral("Copias de Ñ"), space.capacity, {}, space.available};
        EXPECT_EQ(valuesOf(mount), expected);
        ASSERT_EQ(umount(place.c_str()), 0);
        EXPECT_EQ(valuesOf(mount), std::nullopt) << "not the disk below in its place";
    };
    onFileSystem("ext4", place, body, "-L 'Copias de Ñ'");
}

/// As the device manager writes them, for file systems that do not tell by themselves.
TEST(VolumeLabel, IsReadFromTheNameOfALink) {
    inPrivateMounts([] {
        if (mount("devices", "/dev", "tmpfs", 0, nullptr) != 0 ||
            mknod("/dev/one", S_IFBLK | 0600, makedev(7, 91)) != 0) {
            impossibleHere();
        }
        fs::create_directories("/dev/disk/by-label");
        const int folder = open("/dev", O_PATH | O_CLOEXEC);
        const Mount disk = mountAt("/x", "vfat", "/dev/one");
        EXPECT_EQ(volumeLabel(disk, folder), "");
        fs::create_symlink("../../one", R"(/dev/disk/by-label/Mi\x20disco\x2f\xc3\x91\x4z\x4)");
        EXPECT_EQ(volumeLabel(disk, folder), R"(Mi disco/Ñ\x4z\x4)");
        EXPECT_EQ(volumeLabel(mountAt("/x", "zfs", "tank/home"), folder), "tank");
    });
}

}  // namespace
