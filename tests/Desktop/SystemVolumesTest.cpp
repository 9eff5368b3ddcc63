#include "Desktop/PrivateMounts.h"
#include "Desktop/SystemVolumes.h"
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
#include <condition_variable>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <thread>

namespace {

namespace fs = std::filesystem;

using Answers = MountedVolumes::Answers;
using Paths = std::vector<std::string>;

constexpr std::int64_t large = 500'000'000'000;

Mount mountAt(const std::string& target, const std::string& type, const std::string& source, std::uint64_t device = 1) {
    Mount mount;
    mount.device = device;
    mount.target = target;
    mount.type = type;
    mount.source = source;
    return mount;
}

/// A system whose mounts answer when the test lets them.
class FakeSystem {
public:
    ~FakeSystem() {
        change([this] {
            m_held.clear();
            answersTogether = 0;
        });
        EXPECT_TRUE(Threads::waitForAll(std::chrono::seconds(20)));
    }

    [[nodiscard]] SystemVolumes::Sources questions() {
        return {[this] {
                    wasAskedOnMain = wasAskedOnMain || isMain();
                    return table;
                },
                [this](const Mount& mount) { return answer(mount); }};
    }

    /// One more disk, which says that it has `total` bytes.
    void add(const std::string& target, std::int64_t total = large, const std::string& type = "ext4") {
        table->push_back(mountAt(target, type, (type == "ext4" ? "/dev" : "") + target, table->size() + 1));
        values[target] = VolumeValues{{}, total, {}, total / 2};
    }

    void hold(const std::string& target) {
        change([&] { m_held.insert(target); });
    }
    void release(const std::string& target) {
        change([&] { m_held.erase(target); });
    }

    /// How often a mount was asked.
    [[nodiscard]] int asked(const std::string& target) {
        const std::lock_guard lock(m_mutex);
        return m_asked[target];
    }

    std::optional<std::vector<Mount>> table = std::vector<Mount>();
    std::map<std::string, VolumeValues> values;
    std::size_t answersTogether = 0;  ///< No mount answers before so many are asked.
    std::atomic<bool> wasAskedOnMain = false;

private:
    static bool isMain() { return QThread::currentThread() == QCoreApplication::instance()->thread(); }

    void change(const std::function<void()>& work) {
        const std::lock_guard lock(m_mutex);
        work();
        m_changed.notify_all();
    }

    std::optional<VolumeValues> answer(const Mount& mount) {
        std::unique_lock lock(m_mutex);
        wasAskedOnMain = wasAskedOnMain || isMain();
        ++m_asked[mount.target];
        m_changed.notify_all();
        m_changed.wait(lock, [&] { return !m_held.contains(mount.target) && m_asked.size() >= answersTogether; });
        const auto found = values.find(mount.target);
        return found == values.end() ? std::nullopt : std::optional(found->second);
    }

    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::set<std::string> m_held;
    std::map<std::string, int> m_asked;
};

/// Asks, and keeps what has answered by now.
struct Round {
    explicit Round(SystemVolumes& volumes)
        : answers(volumes.ask([this](const Answers& later) {
              answers = later;
              ++updates;
          })),
          atOnce(paths()) {}
    Q_DISABLE_COPY_MOVE(Round)

    [[nodiscard]] Paths paths() const {
        Paths result;
        for (const MountedVolume& volume : answers) {
            result.push_back(volume.url.path());
        }
        return result;
    }

    /// Whether these are, or become, the volumes that have answered.
    [[nodiscard]] bool shows(const Paths& expected) const {
        return waitUntil([&] { return paths() == expected; });
    }

    Answers answers;
    int updates = 0;
    const Paths atOnce;
};

class SystemVolumesTest : public testing::Test {
protected:
    void add(const Paths& targets) {
        for (const std::string& target : targets) {
            system.add(target);
        }
    }

    FakeSystem system;
    SystemVolumes volumes{system.questions()};
};

TEST_F(SystemVolumesTest, AreAskedAllAtOnceAndNothingOnTheMainThread) {
    Paths disks{"/"};
    for (int number = 1; number < 40; ++number) {
        disks.push_back("/disk" + std::to_string(number));
    }
    add(disks);
    system.answersTogether = disks.size();
    EXPECT_TRUE(Round(volumes).shows(disks));
    EXPECT_FALSE(system.wasAskedOnMain);
}

TEST_F(SystemVolumesTest, AppearWhenTheyAnswer) {
    add({"/slow", "/", "/slower", "/quick"});
    for (const char* const held : {"/", "/slow", "/slower"}) {
        system.hold(held);
    }
    const Round round(volumes);
    EXPECT_TRUE(round.shows({"/quick"})) << "the root is not waited for without end";
    system.release("/");
    EXPECT_TRUE(round.shows({"/", "/quick"}));
    system.release("/slower");
    EXPECT_TRUE(round.shows({"/", "/slower", "/quick"})) << "in the table's order";
    system.release("/slow");
    EXPECT_TRUE(round.shows({"/slow", "/", "/slower", "/quick"}));
}

/// Other disks are waited for a moment, the root for longer. A busy machine may miss either once, not each time.
TEST_F(SystemVolumesTest, AreWaitedForByWhatTheyAre) {
    add({"/", "/slow"});
    bool hadRoot = false;
    bool hadSlow = true;
    for (int attempt = 0; attempt < 6 && (!hadRoot || hadSlow); ++attempt) {
        for (const char* const slow : {"/", "/slow"}) {
            system.hold(slow);
            std::jthread later([&] {
                std::this_thread::sleep_for(std::chrono::milliseconds(150));
                system.release(slow);
            });
            const Round round(volumes);
            const bool isThere = std::count(round.atOnce.begin(), round.atOnce.end(), slow) > 0;
            (slow == std::string("/") ? hadRoot : hadSlow) = isThere;
            EXPECT_TRUE(round.shows({"/", "/slow"}));
        }
    }
    EXPECT_TRUE(hadRoot);
    EXPECT_FALSE(hadSlow);
}

TEST_F(SystemVolumesTest, AreNotAskedAgainWhileTheyAreSilent) {
    add({"/", "/slow"});
    system.hold("/slow");
    EXPECT_TRUE(Round(volumes).shows({"/"}));
    const Round second(volumes);
    EXPECT_TRUE(second.shows({"/"}));
    const int updates = second.updates;
    // A mount that comes to be while another one still waits.
    system.add("/new");
    const Round third(volumes);
    EXPECT_TRUE(third.shows({"/", "/new"}));
    EXPECT_EQ(system.asked("/slow"), 1);
    EXPECT_EQ(system.asked("/"), 3);
    system.release("/slow");
    EXPECT_TRUE(third.shows({"/", "/slow", "/new"})) << "it answers to the newest question";
    EXPECT_EQ(second.updates, updates);
    EXPECT_TRUE(Round(volumes).shows({"/", "/slow", "/new"}));
    EXPECT_EQ(system.asked("/slow"), 2);
}

TEST_F(SystemVolumesTest, AreTheRootAloneWhileNoThreadIsToBeHad) {
    add({"/other", "/"});
    {
        const NoThreads none;
        EXPECT_TRUE(Round(volumes).shows({"/"}));
    }
    EXPECT_EQ(system.asked("/other"), 0) << "it might hang, and the window with it";
    EXPECT_TRUE(Round(volumes).shows({"/other", "/"}));
}

TEST_F(SystemVolumesTest, TellNobodyWhenTheyAreGone) {
    add({"/", "/slow"});
    system.hold("/slow");
    auto brief = std::make_unique<SystemVolumes>(system.questions());
    const Round round(*brief);
    EXPECT_TRUE(round.shows({"/"}));
    brief.reset();
    const int updates = round.updates;
    system.release("/slow");
    ASSERT_TRUE(Threads::waitForAll(std::chrono::seconds(20)));
    QCoreApplication::processEvents();
    EXPECT_EQ(round.updates, updates);
}

TEST_F(SystemVolumesTest, AreAskedWhereTheyStillAre) {
    add({"/", "/data/containers/db", "/etc/hosts"});
    for (const std::size_t part : {1U, 2U}) {
        system.table->at(part).device = 9;
        system.table->at(part).root = "/part";
    }
    system.values.erase("/etc/hosts");  // a file
    EXPECT_TRUE(Round(volumes).shows({"/", "/data/containers/db"}));
    EXPECT_EQ(system.asked("/etc/hosts"), 1) << "it is the shorter path";

    system.table.reset();
    EXPECT_TRUE(Round(volumes).shows({"/"})) << "alone when the system lists nothing";
    system.values.clear();
    EXPECT_TRUE(Round(volumes).shows({}));
    EXPECT_EQ(system.asked("/"), 3);
}

TEST_F(SystemVolumesTest, LeaveOutAFuseFileSystemThatRepeatsADisk) {
    constexpr std::int64_t petabyte = std::int64_t{1} << 50;
    system.add("/layer", large, "fuse.own");  // what it repeats comes later
    system.add("/");
    system.add("/plain", large, "fuse");
    system.add("/a little off", large, "fuse");
    system.values["/a little off"].available = large / 2 - 63'000'000;
    system.add("/far off", large, "fuse.sshfs");
    system.values["/far off"].available = large / 2 - 65'000'000;
    system.add("/larger", large + 1, "fuse.sshfs");
    system.add("/cloud", petabyte, "fuse.rclone");
    system.add("/other cloud", petabyte, "fuse");
    system.add("/server", petabyte / 2, "nfs4");
    system.add("/other server", petabyte / 2, "cifs");
    system.add("/copy of the disk");
    system.add("/windows", large, "fuseblk");
    system.table->back().source = "/dev/sdc1";
    EXPECT_TRUE(Round(volumes).shows({"/", "/far off", "/larger", "/cloud", "/other cloud", "/server", "/other server",
                                      "/copy of the disk", "/windows"}));
}

TEST(SystemVolumes, TellWhatTheKernelTells) {
    const auto valuesAt = [](const std::string& path) {
        for (const MountedVolume& volume : SystemVolumes().ask([](const Answers&) {})) {
            if (volume.url.path() == path) {
                return volume.values;
            }
        }
        return VolumeValues();
    };
    EXPECT_FALSE(valuesAt("/").name.value_or(QString()).isEmpty()) << "a label, or the system's name";
    const std::vector<Mount> mounts = currentMounts();
    const auto kernels =
        std::find_if(mounts.begin(), mounts.end(), [](const Mount& row) { return row.target == "/proc"; });
    ASSERT_NE(kernels, mounts.end());
    const std::optional<VolumeValues> nameless = valuesOf(*kernels);
    ASSERT_TRUE(nameless);
    EXPECT_EQ(nameless->name, std::nullopt) << "the system's name is only that of its root";
    EXPECT_EQ(valuesOf(mountAt("/nowhere", "ext4", "/dev/none")), std::nullopt);
    EXPECT_EQ(valuesOf(mountAt("/etc/passwd", "ext4", "/dev/none")), std::nullopt) << "a file is no disk";

    const TemporaryFolder folder;
    const std::string place = folder.path("disk");
    const auto body = [&] {
        const VolumeValues values = valuesAt(place);
        const fs::space_info space = fs::space(place);
        EXPECT_EQ(values.name, QStringLiteral("Copias de Ñ"));
        EXPECT_EQ(values.total, static_cast<std::int64_t>(space.capacity));
        EXPECT_EQ(values.available, static_cast<std::int64_t>(space.available));
        const std::vector<Mount> table = currentMounts();
        const auto mount =
            std::find_if(table.begin(), table.end(), [&](const Mount& row) { return row.target == place; });
        ASSERT_NE(mount, table.end());
        EXPECT_TRUE(valuesOf(*mount).has_value());
        ASSERT_EQ(umount(mount->target.c_str()), 0);
        EXPECT_FALSE(valuesOf(*mount).has_value()) << "not the disk below in its place";
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
        const std::pair<const char*, const char*> rows[] = {
            {R"(Mi\x20disco\x2f\xc3\x91)", "Mi disco/Ñ"}, {R"(a\x4)", R"(a\x4)"}, {R"(\xzz)", R"(\xzz)"}};
        const int folder = open("/dev", O_PATH | O_CLOEXEC);
        for (const auto& [name, label] : rows) {
            const std::string link = std::string("/dev/disk/by-label/") + name;
            fs::create_symlink("../../one", link);
            EXPECT_EQ(volumeLabel(mountAt("/x", "vfat", "/dev/one"), folder), label);
            fs::remove(link);
        }
        EXPECT_EQ(volumeLabel(mountAt("/x", "vfat", "/dev/one"), folder), "");
        EXPECT_EQ(volumeLabel(mountAt("/x", "zfs", "tank/home"), folder), "tank");
    });
}

}  // namespace
