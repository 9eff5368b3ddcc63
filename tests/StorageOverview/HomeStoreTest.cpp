#include "StorageOverview/CategoryMeasurement.h"
#include "StorageOverview/HomeStore.h"
#include "support/FakeDesktop.h"
#include "support/TemporaryFolder.h"
#include "support/WaitUntil.h"

#include <gtest/gtest.h>

namespace {

class HomeStoreTest : public testing::Test {
protected:
    HomeStoreTest() {
        tree.file("home/Music/a", 4096);
        folders.folders.home = tree.url("home");
        folders.folders.systemRoot = tree.url("system");
        volumes.add("/", VolumeValues{QStringLiteral("Disco"), 100 * 4096, {}, 40 * 4096});
    }

    void awaitEnd() {
        ASSERT_TRUE(waitUntil([this] { return !home->isScanning(); }));
    }
    [[nodiscard]] std::int64_t sizeOf(std::size_t kind) const { return home->categories()[kind].size; }

    TemporaryFolder tree;
    FakeVolumes volumes;
    FakeUserFolders folders;
    CategoryMeasurement measurement{folders};
    std::unique_ptr<HomeStore> home = std::make_unique<HomeStore>(volumes, measurement);
};

TEST_F(HomeStoreTest, ShowsTheVolumesAtOnceAndTheKindsLater) {
    EXPECT_TRUE(home->volumes().empty());
    ASSERT_EQ(home->categories().size(), 7U);
    EXPECT_EQ(home->categories()[0], (StorageCategory{StorageKind::music, 0}));
    EXPECT_FALSE(home->isScanning());

    bool idleWithOldKinds = false;
    QObject::connect(home.get(), &HomeStore::isScanningChanged,
                     [&] { idleWithOldKinds = idleWithOldKinds || (!home->isScanning() && sizeOf(0) == 0); });
    home->refresh();
    home->refresh();
    EXPECT_EQ(home->volumes().size(), 1U);
    EXPECT_TRUE(home->isScanning());
    EXPECT_EQ(sizeOf(0), 0);
    awaitEnd();
    EXPECT_EQ(sizeOf(0), 4096);
    EXPECT_EQ(sizeOf(6), 59 * 4096);
    EXPECT_FALSE(idleWithOldKinds);
    EXPECT_EQ(volumes.asked, 1);
    EXPECT_EQ(folders.asked, 1);

    // The old kinds stay until the new have come.
    tree.file("home/Music/b", 4096);
    home->refresh();
    EXPECT_EQ(sizeOf(0), 4096);
    awaitEnd();
    EXPECT_EQ(sizeOf(0), 2 * 4096);

    volumes.answers.clear();
    home->refresh();
    awaitEnd();
    EXPECT_TRUE(home->volumes().empty()) << "none is needed";
    EXPECT_EQ(sizeOf(0), 2 * 4096);
    EXPECT_EQ(sizeOf(6), 0);
}

TEST_F(HomeStoreTest, AddsVolumesThatAnswerLate) {
    const VolumeInfo root = {FileURL("/"), QStringLiteral("Disco"), 100 * 4096, 40 * 4096};
    const VolumeInfo slow = {FileURL("/net/slow"), QStringLiteral("slow"), 7, 3};
    const VolumeInfo last = {FileURL("/last"), QStringLiteral("last"), 9, 3};
    volumes.answers.push_back({last.url, {{}, 9, {}, 3}});
    home->refresh();
    EXPECT_EQ(home->volumes(), (std::vector{root, last}));
    // The system lists the slow one first and the root in the middle.
    volumes.answers.insert(volumes.answers.begin(), {slow.url, {{}, 7, {}, 3}});
    volumes.later(volumes.answers);
    EXPECT_EQ(home->volumes(), (std::vector{root, slow, last}));
    EXPECT_TRUE(home->isScanning());
    awaitEnd();
    volumes.later({});
    EXPECT_TRUE(home->volumes().empty()) << "also when all is measured";
    home.reset();
    volumes.later(volumes.answers);
}

TEST_F(HomeStoreTest, AMeasurementOutlivesItsStoreAndIsJoinedByTheNext) {
    auto own = std::make_unique<CategoryMeasurement>(folders);
    bool answered = false;
    own->request(std::nullopt, [&](const StorageCategories&) { answered = true; });
    own.reset();
    for (int visit = 0; visit < 50; ++visit) {
        home = std::make_unique<HomeStore>(volumes, measurement);
        home->refresh();
    }
    awaitEnd();
    EXPECT_EQ(sizeOf(0), 4096);
    EXPECT_EQ(folders.asked, 2);
    home->refresh();
    awaitEnd();
    EXPECT_EQ(folders.asked, 3);
    EXPECT_FALSE(answered) << "nobody waits for the first one any more";
}

}  // namespace
