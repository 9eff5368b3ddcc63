#include "StorageOverview/StorageOverviewScanner.h"

#include "Foundation/FolderSizes.h"
#include "support/FuseDisk.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <future>
#include <limits>

namespace {

constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();

VolumeInfo volume(std::int64_t total, std::int64_t available) {
    VolumeInfo info;
    info.total = total;
    info.available = available;
    return info;
}

TEST(VolumeInfo, TellsHowFullItIs) {
    struct Row {
        std::int64_t total, available, used;
        double fraction;
        std::int64_t percent;
    };
    const Row rows[] = {
        {1000, 521, 479, 0.479, 47}, {1000, 1, 999, 0.999, 99}, {1000, 0, 1000, 1, 100},
        {500, 600, 0, 0, 0},         {0, 0, 0, 0, 0},           {-5, -10, 5, 0, 0},
        {most, 0, most, 1, 100},
    };
    for (const Row& row : rows) {
        const VolumeInfo info = volume(row.total, row.available);
        EXPECT_EQ(info.used(), row.used) << row.total;
        EXPECT_DOUBLE_EQ(info.usedFraction(), row.fraction) << row.total;
        EXPECT_EQ(info.usedPercent(), row.percent) << row.total;
    }
    EXPECT_DEATH((void)volume(most, -1).used(), "64 bits");
}

TEST(StorageOverviewScanner, MakesVolumesOfWhatAnswers) {
    const QString name = QStringLiteral("Copias");
    const std::vector<VolumeInfo> volumes = StorageOverviewScanner::volumes({
        {FileURL("/media/Backup"), {{}, 1000, {}, 400}},
        {FileURL("/no capacity"), {name, {}, {}, 1}},
        {FileURL("/empty"), {name, 0, {}, 0}},
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

TEST(StorageKinds, ComeBackFromTheirTexts) {
    for (const StorageKind kind : StorageKinds::allCases) {
        EXPECT_EQ(StorageKinds::fromRawValue(StorageKinds::rawValue(kind)), kind);
    }
    EXPECT_EQ(StorageKinds::fromRawValue(QStringLiteral("música")), std::nullopt);
}

class Home : public testing::Test {
protected:
    using Sizes = std::vector<std::int64_t>;

    Home() {
        paths.home = tree.url("home");
        paths.systemRoot = tree.url("system");
    }

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
        for (const StorageCategory& category :
             StorageOverviewScanner::categories(volume(used * 4096, 0), paths).categories) {
            EXPECT_EQ(category.kind, StorageKinds::allCases.at(sizes.size()));
            EXPECT_EQ(category.size % 4096, 0);
            sizes.push_back(category.size / 4096);
        }
        return sizes;
    }

    TemporaryFolder tree;
    UserFolderPaths paths;
};

TEST_F(Home, IsMeasuredByKind) {
    EXPECT_EQ(blocks(), (Sizes{0, 0, 0, 0, 0, 0, 1000}));
    EXPECT_EQ(StorageOverviewScanner::categories(std::nullopt, paths).categories.back().size, 0);
    files({"home/Music/a", "home/Movies/a", "home/Pictures/a", "home/Documents/a", "home/Desktop/a", "home/Downloads/a",
           "home/Applications/a", "system/Applications/a", "system/opt/a", "system/var/lib/flatpak/app/a",
           "system/var/lib/flatpak/runtime/a", "system/var/lib/snapd/snaps/a", "home/.local/share/flatpak/app/a",
           "home/.local/share/flatpak/runtime/a", "home/Elsewhere/a", "system/var/lib/flatpak/repo/a"});
    const std::int64_t applications = (1 << 14) - 64;
    EXPECT_EQ(blocks(20'000), (Sizes{1, 2, 4, 8 + 16, 32, applications, 20'000 - 63 - applications}));
    EXPECT_EQ(blocks(100), (Sizes{1, 2, 4, 24, 32, applications, 0})) << "never below nothing";
    const StorageCategories withoutVolume = StorageOverviewScanner::categories(std::nullopt, paths).categories;
    ASSERT_EQ(withoutVolume.size(), 7U);
    EXPECT_EQ(withoutVolume.back().size, 0);
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

TEST_F(Home, LeavesOutWhatIsHiddenLinkedOrClosed) {
    files({"home/Documents/Report.app/inside", "home/Documents/.hidden file", "home/Documents/.git/object", "big",
           "home/Documents/twice", "home/Documents/b\xFF\n\u202E"});
    tree.link("home/Documents/link", tree.path("big"));
    ASSERT_EQ(link(tree.path("home/Documents/twice").c_str(), tree.path("home/Documents/again").c_str()), 0);
    tree.fifo("home/Documents/pipe");
    tree.text("home/Downloads", "a file where a folder should be");
    EXPECT_EQ(blocks(), (Sizes{0, 0, 0, 1 + 2 * 16 + 32, 0, 0, 1000 - 65}));
    const auto sizes =
        folderSizes({{tree.url("big")}, {tree.url("home/Documents/.git")}}, [](std::string_view) { return true; });
    EXPECT_EQ(sizes.bytes, (Sizes{0, 4 * 4096})) << "a file has nothing below it; asked for by name";
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
    ASSERT_NE(sizes.lateAnswer, nullptr);
    std::promise<void> answered;
    sizes.lateAnswer->whenAnswered([&] { answered.set_value(); });
    disk.release();
    answered.get_future().wait();
}

}  // namespace
