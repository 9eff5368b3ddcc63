#include "Desktop/PrivateMounts.h"
#include "StorageOverview/StorageOverviewScanner.h"

#include "Foundation/FolderSizes.h"
#include "support/FakeDesktop.h"
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
    ASSERT_EQ(volumes.size(), 4U);
    EXPECT_EQ(volumes[0], (VolumeInfo{FileURL("/"), name, 500, 200})) << "first, whatever the order";
    EXPECT_EQ(volumes[1], (VolumeInfo{FileURL("/media/Backup"), QStringLiteral("Backup"), 1000, 400}));
    EXPECT_EQ(volumes[2], (VolumeInfo{FileURL("/data"), QString(), 7, 0})) << "an empty name is a name";
    EXPECT_EQ(volumes[3], (VolumeInfo{FileURL("/more"), name, 8, 0}));
    EXPECT_TRUE(StorageOverviewScanner::volumes({}).empty());
}

TEST(StorageKinds, HaveTheirNamesBothWays) {
    const char* const names[] = {"Música",    "Vídeos",       "Imágenes",       "Documentos",
                                 "Descargas", "Aplicaciones", "Sistema y otros"};
    for (const StorageKind kind : StorageKinds::allCases) {
        const QString name = QString::fromUtf8(names[static_cast<int>(kind)]);
        EXPECT_EQ(StorageKinds::rawValue(kind), name);
        EXPECT_EQ(StorageKinds::fromRawValue(name), kind);
    }
    EXPECT_EQ(StorageKinds::fromRawValue(QStringLiteral("música")), std::nullopt);
}

class Home : public testing::Test {
protected:
    Home() {
        paths.home = tree.url("home");
        paths.systemRoot = tree.url("system");
    }

    /// The sizes of the kinds in blocks of 4096 bytes, the last being what is left of `used` such blocks.
    std::vector<std::int64_t> blocks(std::int64_t used = 1000) const {
        std::vector<std::int64_t> sizes;
        for (const StorageCategory& category :
             StorageOverviewScanner::categories(volume(used * 4096, 0), paths).categories) {
            EXPECT_EQ(category.size % 4096, 0);
            sizes.push_back(category.size / 4096);
        }
        return sizes;
    }

    using Sizes = std::vector<std::int64_t>;
    TemporaryFolder tree;
    UserFolderPaths paths;
};

TEST_F(Home, WithoutFoldersIsAllSystem) {
    EXPECT_EQ(blocks(), (Sizes{0, 0, 0, 0, 0, 0, 1000}));
    const StorageCategories withoutVolume = StorageOverviewScanner::categories(std::nullopt, paths).categories;
    ASSERT_EQ(withoutVolume.size(), 7U);
    for (std::size_t i = 0; i < withoutVolume.size(); ++i) {
        EXPECT_EQ(withoutVolume[i], (StorageCategory{StorageKinds::allCases.at(i), 0}));
    }
}

TEST_F(Home, IsMeasuredByKind) {
    const char* const folders[] = {"home/Music/a",
                                   "home/Movies/a",
                                   "home/Pictures/a",
                                   "home/Documents/a",
                                   "home/Desktop/a",
                                   "home/Downloads/a",
                                   "home/Applications/a",
                                   "system/Applications/a",
                                   "system/opt/a",
                                   "system/var/lib/flatpak/app/a",
                                   "system/var/lib/flatpak/runtime/a",
                                   "system/var/lib/snapd/snaps/a",
                                   "home/.local/share/flatpak/app/a",
                                   "home/.local/share/flatpak/runtime/a",
                                   "home/Elsewhere/a",
                                   "system/var/lib/flatpak/repo/a"};
    std::int64_t size = 1;
    for (const char* const file : folders) {
        tree.file(file, size * 4096);
        size *= 2;
    }
    const std::int64_t applications = 64 + 128 + 256 + 512 + 1024 + 2048 + 4096 + 8192;
    EXPECT_EQ(blocks(20'000), (Sizes{1, 2, 4, 8 + 16, 32, applications, 20'000 - 63 - applications}));
    EXPECT_EQ(blocks(100), (Sizes{1, 2, 4, 24, 32, applications, 0})) << "never below nothing";
}

TEST_F(Home, CountsAPlaceOnceForTheInnermostKind) {
    tree.file("home/Music/a", 4096);
    tree.file("home/Música/a", 2 * 4096);
    tree.file("home/Documents/a", 4 * 4096);
    tree.file("home/Documents/Imágenes/a", 8 * 4096);
    tree.file("disk/a", 16 * 4096);
    tree.file("disk/vídeos/a", 32 * 4096);
    tree.file("disk/vídeos/clips/a", 64 * 4096);
    tree.file("disk/vídeos-2/a", 128 * 4096);
    tree.file("home/.local/share/flatpak/app/a", 256 * 4096);
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
    tree.file("home/Downloads/a", 4096);
    tree.file("home/Pictures/a", 2 * 4096);
    tree.file("disk/a", 4 * 4096);
    paths.music = tree.url("home/Downloads");
    paths.videos = tree.url("disk");
    paths.pictures = tree.url("disk");
    tree.link("home/Movies", tree.path("home/Pictures"));  // both are in every home
    EXPECT_EQ(blocks(), (Sizes{0, 2 + 4, 0, 0, 1, 0, 1000 - 7}));
}

TEST_F(Home, LeavesOutOfAFolderOnlyWhatItWouldHaveCounted) {
    tree.file("home/Documents/a", 4096);
    tree.file("home/Documents/.fotos/a", 2 * 4096);
    tree.file("home/Documents/Correo/fotos/a", 4 * 4096);
    tree.link("home/Documents/enlace", tree.path("home/Documents/Correo"));
    tree.file("elsewhere/Correo/fotos/a", 8 * 4096);
    paths.pictures = tree.url("home/Documents/.fotos");  // hidden from the documents, not when asked for
    paths.music = tree.url("home/Documents/enlace/fotos");
    paths.desktop = tree.url("elsewhere");
    EXPECT_EQ(blocks(), (Sizes{4, 0, 2, 1 + 8, 0, 0, 1000 - 15}));
}

TEST_F(Home, IsMeasuredWhileTheDiskOfOneFolderIsSilent) {
    tree.file("home/Music/a", 4096);
    tree.file("home/Fotos/a", 2 * 4096);
    tree.folder("silent");
    paths.music = tree.url("silent/Música");
    paths.pictures = tree.url("home/Fotos");
    const std::optional<bool> passed = withPrivateMounts([&] {
        const int server = mountSilentDisk(tree.path("silent"));
        if (server < 0) {
            _exit(77);
        }
        const auto sizes = StorageOverviewScanner::categories(std::nullopt, paths);
        EXPECT_EQ(sizes.categories[0].size, 4096);
        EXPECT_EQ(sizes.categories[2].size, 2 * 4096);
        ASSERT_NE(sizes.lateAnswer, nullptr);
        std::promise<void> answered;
        sizes.lateAnswer->whenAnswered([&] { answered.set_value(); });
        close(server);
        answered.get_future().wait();
    });
    if (!passed) {
        GTEST_SKIP() << "nobody may mount here";
    }
    EXPECT_TRUE(*passed);
}

TEST_F(Home, LeavesOutWhatIsHiddenLinkedOrClosed) {
    tree.file("home/Documents/Report.app/inside", 4096);
    tree.file("home/Documents/.hidden file", 2 * 4096);
    tree.file("home/Documents/.git/object", 4 * 4096);
    tree.file("big", 8 * 4096);
    tree.link("home/Documents/link", tree.path("big"));
    tree.file("home/Documents/twice", 16 * 4096);
    ASSERT_EQ(link(tree.path("home/Documents/twice").c_str(), tree.path("home/Documents/again").c_str()), 0);
    tree.file("home/Documents/b\xFF\n\u202E", 64 * 4096);
    tree.fifo("home/Documents/pipe");
    tree.text("home/Downloads", "a file where a folder should be");
    EXPECT_EQ(blocks(), (Sizes{0, 0, 0, 1 + 32 + 64, 0, 0, 1000 - 97}));
    const auto sizes =
        folderSizes({{tree.url("big")}, {tree.url("home/Documents/.git")}}, [](std::string_view) { return true; });
    EXPECT_EQ(sizes.bytes, (std::vector<std::int64_t>{0, 4 * 4096}))
        << "a file has nothing below it; asked for by name";
}

}  // namespace
