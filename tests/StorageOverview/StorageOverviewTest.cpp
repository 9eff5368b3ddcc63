#include "StorageOverview/CategoryMeasurement.h"
#include "StorageOverview/HomeStore.h"
#include "StorageOverview/StorageOverviewScanner.h"
#include "support/FakeDesktop.h"
#include "support/FuseDisk.h"
#include "support/WaitUntil.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <future>
#include <limits>

namespace {

constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();

TEST(VolumeInfo, TellsHowFullItIs) {
    const std::int64_t rows[][4] = {{1000, 521, 479, 47}, {1000, 0, 1000, 100}, {500, 600, 0, 0},
                                    {0, 0, 0, 0},         {-5, -10, 5, 0},      {most, 0, most, 100}};
    for (const auto& [total, available, used, percent] : rows) {
        const VolumeInfo info{{}, {}, total, available};
        EXPECT_EQ(info.used(), used) << total;
        EXPECT_EQ(info.usedPercent(), percent) << total;
    }
    EXPECT_DEATH((void)(VolumeInfo{{}, {}, most, -1}.used()), "64 bits");
}

TEST(StorageOverviewScanner, MakesVolumesOfWhatAnswers) {
    const QString name = QStringLiteral("Copias");
    const std::vector<VolumeInfo> volumes = StorageOverviewScanner::volumes({
        {FileURL("/media/Backup"), {{}, 1000, {}, 400}},
        {FileURL("/no capacity"), {name, {}, {}, 1}},
        {FileURL("/"), {name, 500, 200, 150}},
        {FileURL("/data"), {QString(), 7, {}, -3}},
        {FileURL("/more"), {name, 8, {}, {}}},
    });
    EXPECT_EQ(volumes, (std::vector<VolumeInfo>{
                           {FileURL("/"), name, 500, 200},  // first, whatever the order
                           {FileURL("/media/Backup"), QStringLiteral("Backup"), 1000, 400},
                           {FileURL("/data"), QString(), 7, 0},  // an empty name is a name
                           {FileURL("/more"), name, 8, 0},
                       }));
}

class Home : public testing::Test {
protected:
    using Sizes = std::vector<std::int64_t>;

    /// Makes files: the first takes a block of 4096 bytes, each other one twice as many as the one before.
    void files(const std::vector<const char*>& names) const {
        std::int64_t size = 4096;
        for (const char* const name : names) {
            tree.file(name, size);
            size *= 2;
        }
    }

    /// The sizes of the kinds in blocks, the last being what is left of `used` blocks.
    [[nodiscard]] Sizes blocks(std::int64_t used = 1000) const {
        Sizes sizes;
        const VolumeInfo disk{{}, {}, used * 4096, 0};
        for (const StorageCategory& category : StorageOverviewScanner::categories(disk, paths).categories) {
            EXPECT_EQ(category.kind, StorageKinds::allCases.at(sizes.size()));
            EXPECT_EQ(category.size % 4096, 0);
            sizes.push_back(category.size / 4096);
        }
        return sizes;
    }

    TemporaryFolder tree;
    UserFolderPaths paths = foldersIn(tree);
};

TEST_F(Home, IsMeasuredByKind) {
    files({"home/Music/a", "home/Movies/a", "home/Pictures/a", "home/Documents/Report.app/a", "home/Desktop/a",
           "home/Downloads/b\xFF\n\u202E", "home/Applications/a", "system/Applications/a", "system/opt/a",
           "system/var/lib/flatpak/app/a", "system/var/lib/flatpak/runtime/a", "system/var/lib/snapd/snaps/a",
           "home/.local/share/flatpak/app/a", "home/.local/share/flatpak/runtime/a", "home/Elsewhere/a",
           "system/var/lib/flatpak/repo/a"});
    tree.text("home/Documents/.git/object", "hidden");
    tree.link("home/Documents/link", tree.path("home/Movies"));
    tree.fifo("home/Documents/pipe");
    ASSERT_EQ(link(tree.path("home/Music/a").c_str(), tree.path("home/Music/again").c_str()), 0);
    const std::int64_t applications = (1 << 14) - 64;
    EXPECT_EQ(blocks(20'000), (Sizes{2 * 1, 2, 4, 8 + 16, 32, applications, 20'000 - 64 - applications}));
    EXPECT_EQ(blocks(100), (Sizes{2, 2, 4, 24, 32, applications, 0})) << "never below nothing";
}

TEST_F(Home, CountsAPlaceOnceForTheInnermostKind) {
    files({"home/Music/a", "home/Música/a", "home/Documents/a", "home/Documents/Imágenes/a", "disk/a", "disk/vídeos/a",
           "disk/vídeos/clips/a", "disk/vídeos-2/a", "home/.local/share/flatpak/app/a"});
    tree.link("home/Vídeos", tree.path("disk/vídeos"));
    paths.music = tree.url("home/Música");
    paths.videos = tree.url("home/Vídeos");                // a link to another disk
    paths.pictures = tree.url("home/Documents/Imágenes");  // inside the documents
    paths.documents = paths.home;                          // switched off
    paths.desktop = tree.url("disk/vídeos/clips");         // inside what an earlier kind has
    paths.downloads = tree.url("disk");                    // around both
    EXPECT_EQ(blocks(), (Sizes{1 + 2, 32, 8, 4 + 64, 16 + 128, 256, 1000 - 511}));
    paths.music = tree.url();  // around the home
    paths.downloads = tree.url("missing");
    EXPECT_EQ(blocks(), (Sizes{1, 32, 8, 4 + 64, 0, 256, 1000 - 365}));
}

TEST_F(Home, CountsTheSameFolderForTheOneThatEveryHomeHasOrTheEarlierKind) {
    files({"home/Downloads/a", "home/Pictures/a", "disk/a"});
    paths.music = tree.url("home/Downloads");
    paths.videos = paths.pictures = tree.url("disk");
    tree.link("home/Movies", tree.path("home/Pictures"));  // both are in every home
    EXPECT_EQ(blocks(), (Sizes{0, 2 + 4, 0, 0, 1, 0, 1000 - 7}));
}

TEST_F(Home, LeavesOutOfAFolderOnlyWhatItWouldHaveCounted) {
    files({"home/Documents/a", "home/Documents/.fotos/a", "home/Documents/Correo/fotos/a", "elsewhere/Correo/fotos/a"});
    tree.link("home/Documents/enlace", tree.path("home/Documents/Correo"));
    paths.pictures = tree.url("home/Documents/.fotos");  // hidden from the documents, not when asked for
    paths.music = tree.url("home/Documents/enlace/fotos");
    paths.desktop = tree.url("elsewhere");
    EXPECT_EQ(blocks(), (Sizes{4, 0, 2, 1 + 8, 0, 0, 1000 - 15}));
}

TEST_F(Home, IsMeasuredWhileTheDiskOfOneFolderIsSilent) {
    FuseDisk disk(tree.path("silent"));
    if (!disk.isMounted()) {
        GTEST_SKIP() << FuseDisk::whyNot;
    }
    files({"home/Music/a", "home/Fotos/a"});
    paths.music = tree.url("silent/Música");
    paths.pictures = tree.url("home/Fotos");
    disk.hang("");
    const auto sizes = StorageOverviewScanner::categories(std::nullopt, paths);
    EXPECT_EQ(sizes.categories[0].size, 4096);
    EXPECT_EQ(sizes.categories[2].size, 2 * 4096);
    EXPECT_EQ(sizes.categories[6].size, 0) << "no volume is known";
    ASSERT_NE(sizes.lateAnswer, nullptr);
    std::promise<void> answered;
    sizes.lateAnswer->whenAnswered([&] { answered.set_value(); });
    disk.release();
    answered.get_future().wait();
}

class HomeStoreTest : public Home {
protected:
    HomeStoreTest() {
        files({"home/Music/a"});
        folders.folders = paths;
        volumes.add("/", VolumeValues{QStringLiteral("Disco"), 100 * 4096, {}, 40 * 4096});
    }

    void awaitEnd() {
        ASSERT_TRUE(waitUntil([this] { return !home->isScanning(); }));
    }
    [[nodiscard]] std::int64_t sizeOf(std::size_t kind) const { return home->categories()[kind].size; }

    FakeVolumes volumes;
    FakeUserFolders folders;
    CategoryMeasurement measurement{folders};
    std::unique_ptr<HomeStore> home = std::make_unique<HomeStore>(volumes, measurement);
};

TEST_F(HomeStoreTest, ShowsTheVolumesAtOnceAndTheKindsLater) {
    ASSERT_EQ(home->categories().size(), 7U);
    bool idleWithOldKinds = false;
    QObject::connect(home.get(), &HomeStore::isScanningChanged,
                     [&] { idleWithOldKinds = idleWithOldKinds || (!home->isScanning() && sizeOf(0) == 0); });
    home->refresh();
    home->refresh();
    EXPECT_EQ(volumes.asked, 1);
    EXPECT_EQ(home->volumes().size(), 1U);
    EXPECT_EQ(sizeOf(0), 0);
    awaitEnd();
    EXPECT_EQ(sizeOf(0), 4096);
    EXPECT_EQ(sizeOf(6), 59 * 4096);
    EXPECT_FALSE(idleWithOldKinds);

    volumes.answers.clear();
    home->refresh();
    EXPECT_EQ(sizeOf(0), 4096) << "the old kinds stay until the new have come";
    awaitEnd();
    EXPECT_EQ(sizeOf(6), 0) << "without volumes";
}

TEST_F(HomeStoreTest, AddsVolumesThatAnswerLate) {
    const VolumeInfo root = {FileURL("/"), QStringLiteral("Disco"), 100 * 4096, 40 * 4096};
    const VolumeInfo slow = {FileURL("/net/slow"), QStringLiteral("slow"), 7, 3};
    const VolumeInfo last = {FileURL("/last"), QStringLiteral("last"), 9, 3};
    volumes.add("/last", {{}, 9, {}, 3});
    home->refresh();
    EXPECT_EQ(home->volumes(), (std::vector{root, last}));
    // The system lists the slow one first and the root in the middle.
    volumes.answers.insert(volumes.answers.begin(), {slow.url, {{}, 7, {}, 3}});
    volumes.later(volumes.answers);
    EXPECT_EQ(home->volumes(), (std::vector{root, slow, last}));
    awaitEnd();
    volumes.later({});
    EXPECT_TRUE(home->volumes().empty()) << "also when all is measured";
    home.reset();
    volumes.later(volumes.answers);
}

TEST_F(HomeStoreTest, AMeasurementOutlivesItsStoreAndIsJoinedByTheNext) {
    auto own = std::make_unique<CategoryMeasurement>(folders);
    own->request(std::nullopt, [](const StorageCategories&) { ADD_FAILURE() << "nobody waits for it any more"; });
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
}

}  // namespace
