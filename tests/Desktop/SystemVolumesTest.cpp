#include "Desktop/PrivateMounts.h"
#include "Desktop/SystemVolumes.h"
#include "Foundation/Threads.h"
#include "support/TemporaryFolder.h"
#include "support/WaitUntil.h"

#include <pthread.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <condition_variable>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <thread>

namespace {

using Answers = MountedVolumes::Answers;
using Paths = std::vector<std::string>;

void nobody(const Answers&) {}

Mount mountAt(const std::string& target, const std::string& type, const std::string& source, std::uint64_t device) {
    Mount mount;
    mount.device = device;
    mount.target = target;
    mount.type = type;
    mount.source = source;
    return mount;
}

Paths paths(const Answers& answers) {
    Paths result;
    for (const MountedVolume& volume : answers) {
        result.push_back(volume.url.path());
    }
    return result;
}

const MountedVolume* find(const Answers& answers, const std::string& path) {
    const auto found = std::find_if(answers.begin(), answers.end(),
                                    [&](const MountedVolume& volume) { return volume.url.path() == path; });
    return found == answers.end() ? nullptr : &*found;
}

/// A system whose mounts answer when the test lets them.
class FakeSystem {
public:
    ~FakeSystem() {
        // Threads that still wait refer to this.
        std::unique_lock lock(m_mutex);
        m_isOver = true;
        m_changed.notify_all();
        m_changed.wait(lock, [this] { return m_inside == 0; });
    }

    [[nodiscard]] SystemVolumes::Sources questions() {
        return {[this] {
                    note();
                    return table;
                },
                [this](const Mount& mount) { return answer(mount); }};
    }

    /// One more disk, which says that it has `total` bytes.
    void add(const std::string& target, std::int64_t total, const std::string& type = "ext4") {
        table->push_back(mountAt(target, type, (type == "ext4" ? "/dev" : "") + target, table->size() + 1));
        values[target] = VolumeValues{{}, total, {}, total / 2};
    }

    void hold(const std::string& target) {
        const std::lock_guard lock(m_mutex);
        m_held.insert(target);
    }
    void release(const std::string& target) {
        const std::lock_guard lock(m_mutex);
        m_held.erase(target);
        m_changed.notify_all();
    }

    /// How often a mount was asked.
    [[nodiscard]] int asked(const std::string& target) {
        const std::lock_guard lock(m_mutex);
        return m_asked[target];
    }
    [[nodiscard]] bool wasAskedOn(std::thread::id thread) {
        const std::lock_guard lock(m_mutex);
        return m_threads.contains(thread);
    }

    std::optional<std::vector<Mount>> table = std::vector<Mount>();
    std::map<std::string, VolumeValues> values;
    std::size_t answersTogether = 0;  ///< No mount answers before so many are asked.

private:
    void note() {
        const std::lock_guard lock(m_mutex);
        m_threads.insert(std::this_thread::get_id());
    }

    std::optional<VolumeValues> answer(const Mount& mount) {
        note();
        std::unique_lock lock(m_mutex);
        ++m_asked[mount.target];
        ++m_inside;
        m_changed.notify_all();
        m_changed.wait(
            lock, [&] { return m_isOver || (!m_held.contains(mount.target) && m_asked.size() >= answersTogether); });
        --m_inside;
        m_changed.notify_all();
        const auto found = values.find(mount.target);
        return found == values.end() ? std::nullopt : std::optional(found->second);
    }

    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::set<std::string> m_held;
    std::map<std::string, int> m_asked;
    std::set<std::thread::id> m_threads;
    int m_inside = 0;
    bool m_isOver = false;
};

/// Asks, and keeps what has answered by now.
class Round {
public:
    explicit Round(SystemVolumes& volumes)
        : m_answers(volumes.ask([this](const Answers& answers) {
              m_answers = answers;
              ++m_updates;
          })) {}
    Q_DISABLE_COPY_MOVE(Round)

    /// Whether these are, or become, the volumes that have answered.
    [[nodiscard]] bool shows(const Paths& expected) const {
        return waitUntil([&] { return paths(m_answers) == expected; });
    }
    [[nodiscard]] int updates() const { return m_updates; }

private:
    int m_updates = 0;
    Answers m_answers;
};

TEST(SystemVolumes, TellWhatTheKernelTellsOfTheRoot) {
    SystemVolumes volumes;
    const Answers answers = volumes.ask(nobody);
    const MountedVolume* const root = find(answers, "/");
    ASSERT_NE(root, nullptr);
    struct statvfs status {};
    ASSERT_EQ(statvfs("/", &status), 0);
    EXPECT_EQ(root->values.total, static_cast<std::int64_t>(status.f_blocks * status.f_frsize));
    EXPECT_FALSE(root->values.name.value_or(QString()).isEmpty()) << "a label, or the system's name";
    EXPECT_EQ(valuesOf(mountAt("/nowhere", "ext4", "/dev/none", 1)), std::nullopt);
    EXPECT_EQ(valuesOf(mountAt("/etc/passwd", "ext4", "/dev/none", 1)), std::nullopt) << "a file is no disk";
}

TEST(SystemVolumes, AreAskedAllAtOnceAndNothingOnTheMainThread) {
    FakeSystem system;
    Paths disks;
    for (int number = 0; number < 40; ++number) {
        disks.push_back(number == 0 ? "/" : "/disk" + std::to_string(number));
        system.add(disks.back(), 10);
    }
    system.answersTogether = disks.size();
    SystemVolumes volumes(system.questions());
    EXPECT_TRUE(Round(volumes).shows(disks));
    EXPECT_FALSE(system.wasAskedOn(std::this_thread::get_id()));
}

TEST(SystemVolumes, AppearWhenTheyAnswer) {
    FakeSystem system;
    for (const char* const target : {"/slow", "/", "/slower", "/quick"}) {
        system.add(target, 10);
    }
    system.hold("/slow");
    system.hold("/slower");
    SystemVolumes volumes(system.questions());
    const Round round(volumes);
    EXPECT_TRUE(round.shows({"/", "/quick"}));
    system.release("/slower");
    EXPECT_TRUE(round.shows({"/", "/slower", "/quick"})) << "in the table's order";
    system.release("/slow");
    EXPECT_TRUE(round.shows({"/slow", "/", "/slower", "/quick"}));
}

TEST(SystemVolumes, WaitForTheRootButNotForEver) {
    FakeSystem system;
    system.add("/", 1000);
    system.add("/quick", 30);
    system.hold("/");
    SystemVolumes volumes(system.questions());
    const Round round(volumes);
    EXPECT_TRUE(round.shows({"/quick"}));
    system.release("/");
    EXPECT_TRUE(round.shows({"/", "/quick"}));
}

TEST(SystemVolumes, AreNotAskedAgainWhileTheyAreSilent) {
    FakeSystem system;
    system.add("/", 1000);
    system.add("/slow", 10);
    system.hold("/slow");
    SystemVolumes volumes(system.questions());
    const Round first(volumes);
    EXPECT_TRUE(first.shows({"/"}));
    const Round second(volumes);
    EXPECT_TRUE(second.shows({"/"}));
    const int updates = second.updates();
    // A mount that comes to be while another one still waits.
    system.add("/new", 20);
    const Round third(volumes);
    EXPECT_TRUE(third.shows({"/", "/new"}));
    EXPECT_EQ(system.asked("/slow"), 1);
    EXPECT_EQ(system.asked("/"), 3);
    system.release("/slow");
    EXPECT_TRUE(third.shows({"/", "/slow", "/new"})) << "it answers to the newest question";
    EXPECT_EQ(second.updates(), updates);
    EXPECT_TRUE(Round(volumes).shows({"/", "/slow", "/new"}));
    EXPECT_EQ(system.asked("/slow"), 2);
}

TEST(SystemVolumes, AreTheRootAloneWhileNoThreadIsToBeHad) {
    FakeSystem system;
    system.add("/other", 10);
    system.add("/", 1000);
    SystemVolumes volumes(system.questions());
    pthread_attr_t usual;
    ASSERT_EQ(pthread_getattr_default_np(&usual), 0);
    pthread_attr_t impossible = usual;
    ASSERT_EQ(pthread_attr_setstacksize(&impossible, std::size_t{1} << 60), 0);
    ASSERT_EQ(pthread_setattr_default_np(&impossible), 0);
    EXPECT_TRUE(Round(volumes).shows({"/"}));
    ASSERT_EQ(pthread_setattr_default_np(&usual), 0);
    EXPECT_EQ(system.asked("/other"), 0) << "it might hang, and the window with it";
    EXPECT_TRUE(Round(volumes).shows({"/other", "/"}));
}

TEST(SystemVolumes, TellNobodyWhenTheyAreGone) {
    FakeSystem system;
    system.add("/", 1000);
    system.add("/slow", 10);
    system.hold("/slow");
    auto volumes = std::make_unique<SystemVolumes>(system.questions());
    const Round round(*volumes);
    EXPECT_TRUE(round.shows({"/"}));
    volumes.reset();
    const int updates = round.updates();
    system.release("/slow");
    ASSERT_TRUE(Threads::waitForAll(std::chrono::seconds(20)));
    QCoreApplication::processEvents();
    EXPECT_EQ(round.updates(), updates);
}

TEST(SystemVolumes, AreAskedWhereTheyStillAre) {
    FakeSystem system;
    system.add("/", 1000);
    system.add("/data/containers/db", 10);
    system.add("/etc/hosts", 10);
    for (const std::size_t part : {1U, 2U}) {
        system.table->at(part).device = 9;
        system.table->at(part).root = "/part";
    }
    system.values.erase("/etc/hosts");  // a file
    SystemVolumes volumes(system.questions());
    EXPECT_TRUE(Round(volumes).shows({"/", "/data/containers/db"}));
    EXPECT_EQ(system.asked("/etc/hosts"), 1) << "it is the shorter path";
}

TEST(SystemVolumes, AreTheRootAloneWhenTheSystemListsNothing) {
    FakeSystem system;
    system.values["/"] = VolumeValues{{}, 10, {}, 4};
    system.table.reset();
    SystemVolumes volumes(system.questions());
    EXPECT_TRUE(Round(volumes).shows({"/"}));
    system.values.clear();
    EXPECT_TRUE(Round(volumes).shows({}));
    EXPECT_EQ(system.asked("/"), 2);
}

TEST(SystemVolumes, LeaveOutAFuseFileSystemThatRepeatsADisk) {
    constexpr std::int64_t petabyte = std::int64_t{1} << 50;
    constexpr std::int64_t size = 500'000'000'000;
    FakeSystem system;
    system.add("/layer", size, "fuse.own");  // what it repeats comes later
    system.add("/", size);
    system.add("/plain", size, "fuse");
    system.add("/a little off", size, "fuse");
    system.values["/a little off"].available = size / 2 - 63'000'000;
    system.add("/far off", size, "fuse.sshfs");
    system.values["/far off"].available = size / 2 - 65'000'000;
    system.add("/larger", size + 1, "fuse.sshfs");
    system.add("/cloud", petabyte, "fuse.rclone");
    system.add("/other cloud", petabyte, "fuse");
    system.add("/server", petabyte / 2, "nfs4");
    system.add("/other server", petabyte / 2, "cifs");
    system.add("/copy of the disk", size);
    system.add("/windows", size, "fuseblk");
    system.table->back().source = "/dev/sdc1";
    SystemVolumes volumes(system.questions());
    EXPECT_TRUE(Round(volumes).shows({"/", "/far off", "/larger", "/cloud", "/other cloud", "/server", "/other server",
                                      "/copy of the disk", "/windows"}));
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
        const Answers answers = volumes.ask(nobody);
        const MountedVolume* const disk = find(answers, folder.path("disk"));
        ASSERT_NE(disk, nullptr);
        EXPECT_EQ(disk->values.name, QStringLiteral("Copias de Ñ"));
        struct statvfs status {};
        ASSERT_EQ(statvfs(folder.path("disk").c_str(), &status), 0);
        EXPECT_EQ(disk->values.total, static_cast<std::int64_t>(status.f_blocks * status.f_frsize));
        EXPECT_EQ(disk->values.available, static_cast<std::int64_t>(status.f_bavail * status.f_frsize));
        EXPECT_LT(*disk->values.available, static_cast<std::int64_t>(status.f_bfree * status.f_frsize));

        const std::vector<Mount> table = readMountTable().value_or(std::vector<Mount>());
        const auto mount = std::find_if(table.begin(), table.end(),
                                        [&](const Mount& row) { return row.target == folder.path("disk"); });
        ASSERT_NE(mount, table.end());
        EXPECT_TRUE(valuesOf(*mount).has_value());
        ASSERT_EQ(umount(mount->target.c_str()), 0);
        EXPECT_FALSE(valuesOf(*mount).has_value()) << "not the disk below in its place";
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
        if (mountSilentDisk(folder.path("silent")) < 0) {
            _exit(77);
        }
        SystemVolumes volumes;
        for (int round = 0; round < 5; ++round) {
            const Answers answers = volumes.ask(nobody);
            EXPECT_EQ(find(answers, folder.path("silent")), nullptr);
            EXPECT_NE(find(answers, "/"), nullptr);
        }
    });
    if (!passed) {
        GTEST_SKIP() << "nobody may mount here";
    }
    EXPECT_TRUE(*passed);
}

}  // namespace
