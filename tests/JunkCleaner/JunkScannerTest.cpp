#include "Desktop/PrivateMounts.h"
#include "JunkCleaner/NamePattern.h"
#include "JunkTree.h"

#include <gtest/gtest.h>
#include <QtCore/QDateTime>
#include <QtCore/QTimeZone>

namespace {

using Listed = std::vector<std::string>;

class JunkScannerTest : public testing::Test, protected JunkTree {
protected:
    /// One line an item, the path beginning in the tree, the size in blocks.
    [[nodiscard]] Listed list() const {
        Listed lines;
        for (const JunkItem& item : scan()) {
            EXPECT_EQ(item.size % 4096, 0);
            lines.push_back(JunkKinds::rawValue(item.kind).toStdString() + " · " + item.origin.toStdString() + " " +
                            placeOf(item) + " " + std::to_string(item.size / 4096));
        }
        return lines;
    }
};

TEST_F(JunkScannerTest, ListsEveryKindLargestFirst) {
    EXPECT_EQ(list(), Listed{}) << "no place is there";
    tree.file("home/.config/com.foo.com.bar", 6 * 4096);
    tree.file("home/Library/Caches/com.example.Editor/deep/er/a", 5 * 4096);
    tree.file("home/.cache/telecom.x/a", 4 * 4096);
    tree.file("home/Library/Logs/install.log", 3 * 4096);
    tree.file("home/.local/state/log/ends.", 2 * 4096);
    tree.file("tmp/old", 4096);
    age("tmp/old", 3 * day);
    EXPECT_EQ(list(),
              (Listed{"Posible resto · Aplicación no encontrada: com.foo.com.bar home/.config/com.foo.com.bar 6",
                      "Caché · Editor home/Library/Caches/com.example.Editor 5",
                      "Caché · telex home/.cache/telecom.x 4", "Registro · log home/Library/Logs/install.log 3",
                      "Registro · Registro home/.local/state/log/ends. 2", "Temporal · old tmp/old 1"}));
}

/// Two days are counted by the calendar: where clocks were changed yesterday they last 46 or 50 hours.
TEST_F(JunkScannerTest, LeavesTemporaryFilesTwoDays) {
    const qint64 now = QDateTime::currentSecsSinceEpoch();
    const std::pair<std::string, qint64> files[] = {{"45h", 45 * 3600},  {"47h", 47 * 3600}, {"49h", 49 * 3600},
                                                    {"51h", 51 * 3600},  {"1970", now},      {"1900", 126 * 365 * day},
                                                    {"future", -9 * day}};
    std::int64_t size = 7;
    for (const auto& [file, seconds] : files) {
        tree.file("tmp/" + file, 4096 * size--);
        age("tmp/" + file, seconds);
    }
    // Zones whose summer time began, or ended, 30 hours ago. A rule's hour is that of the clock before the change.
    const QDateTime changed = QDateTime::fromSecsSinceEpoch(now - 30 * 3600, QTimeZone::utc());
    const auto rule = [&](int days, int hours) {
        return ',' + std::to_string((changed.date().dayOfYear() - 1 + days) % 364) + '/' +
               std::to_string(changed.time().hour() + hours);
    };
    const std::pair<std::string, std::vector<std::string>> zones[] = {
        {"UTC0", {"49h", "51h", "1970", "1900"}},
        {"AAA0BBB-2" + rule(0, 0) + rule(180, 0), {"47h", "49h", "51h", "1970", "1900"}},
        {"AAA0BBB-2" + rule(180, 0) + rule(0, 2), {"51h", "1970", "1900"}},
    };
    const QByteArray before = qgetenv("TZ");
    for (const auto& [zone, expected] : zones) {
        setenv("TZ", zone.c_str(), 1);
        tzset();
        Listed found;
        for (const JunkItem& item : scan()) {
            found.push_back(item.name().toStdString());
        }
        EXPECT_EQ(found, expected) << zone;
    }
    before.isEmpty() ? unsetenv("TZ") : setenv("TZ", before.constData(), 1);
    tzset();
}

TEST_F(JunkScannerTest, MeasuresWhatAFolderHoldsWithoutWhatIsHiddenLinkedOrNoFile) {
    tree.file("home/.cache/app/a", 4096);
    tree.file("home/.cache/app/sub/b\xFF", 2 * 4096);
    tree.file("home/.cache/app/.hidden", 4 * 4096);
    tree.file("home/.cache/app/Some.app/inside", 8 * 4096);
    tree.file("home/big/a", 16 * 4096);
    for (const char* const link : {"home/.cache/app/link", "home/.cache/link", "home/.config/Elsewhere"}) {
        tree.link(link, tree.path("home/big"));
    }
    tree.folder("home/.cache/empty");
    tree.file("home/.cache/only hidden/.a", 4096);
    tree.file("home/.cache/listed", 4096);
    tree.text("home/.cache/.hidden", "listed\n");
    tree.file("home/.cache/Whole.app/inside", 5 * 4096);
    tree.file("home/.cache/file\xFE", 4 * 4096);
    tree.fifo("home/.cache/pipe");
    tree.text("home/Library/Logs", "a file where a folder should be");
    tree.link("home/.npm/_logs", tree.path("missing"));
    Listed expected{"Caché · app home/.cache/Whole.app 5", "Caché · file\uFFFD home/.cache/file\xFE 4",
                    "Caché · app home/.cache/app 3"};
    EXPECT_EQ(list(), expected);
    // A place that is a link itself is looked into.
    tree.link("home/Library/Caches", tree.path("home/big"));
    expected.insert(expected.begin(), "Caché · a home/Library/Caches/a 16");
    EXPECT_EQ(list(), expected);
}

TEST_F(JunkScannerTest, PassesOverOtherUsersEntriesAndMounts) {
    for (const char* const folder : {"own", "mounted", "theirs"}) {
        tree.file(std::string("home/.cache/") + folder + "/a", 4096);
    }
    inPrivateMounts([this] {
        const std::string cache = tree.path("home/.cache");
        ASSERT_EQ(mount((cache + "/own").c_str(), (cache + "/mounted").c_str(), nullptr, MS_BIND, nullptr), 0);
        Listed expected{"Caché · own home/.cache/own 1"};
        if (geteuid() != 0 || chown((cache + "/theirs").c_str(), 65534, 65534) != 0) {
            expected.push_back("Caché · theirs home/.cache/theirs 1");
        }
        Listed found = list();
        std::sort(found.begin(), found.end());
        EXPECT_EQ(found, expected);
        ASSERT_EQ(mount("memory", cache.c_str(), "tmpfs", 0, nullptr), 0);
        paths.temporary = paths.cacheHome;
        paths.cacheHome = tree.url("none");
        tree.file("home/.cache/old", 4096);
        age("home/.cache/old", 9 * day);
        EXPECT_EQ(list(), Listed{}) << "memory is not disk";
    });
}

TEST_F(JunkScannerTest, ListsAThingOnceForTheEarlierPlace) {
    tree.file("home/.cache/app/a", 4096);
    tree.file("home/.cache/tmp/old", 2 * 4096);
    age("home/.cache/tmp/old", 9 * day);
    tree.file("home/.local/share/xorg/Xorg.0.log", 3 * 4096);
    paths.temporary = tree.url("home/.cache/tmp");
    tree.folder("home/Library");
    tree.link("home/Library/Caches", tree.path("home/.cache"));
    EXPECT_EQ(list(), (Listed{"Registro · log home/.local/share/xorg/Xorg.0.log 3",
                              "Caché · tmp home/Library/Caches/tmp 2", "Caché · app home/Library/Caches/app 1"}));
    paths.configHome = paths.dataHome;
    tree.file("home/.local/share/Pintura", 4 * 4096);
    EXPECT_EQ(list().front(), "Posible resto · Aplicación no encontrada: Pintura home/.local/share/Pintura 4");
    EXPECT_EQ(list().size(), 4U);
}

TEST_F(JunkScannerTest, NeverOffersAPersonsFoldersWhateverTheVariablesSay) {
    // The first is the home itself.
    constexpr std::string_view personal =
        "|Documents|Desktop|Downloads|Music|Movies|Pictures|Videos|Public|Templates|bin|.ssh|.gnupg|Applications|"
        "Library|Library/Application Support|.local|.local/share|.local/state|.local/bin|.config|.var/app";
    forEachPart(personal, '|', [this](auto folder) { tree.file("home/" + std::string(folder) + "/thesis", 4096); });
    tree.file("disk/Música/song", 4096);
    tree.file("disk/other", 4096);
    tree.file("beside/a", 4096);
    paths.music = tree.url("disk/Música");
    install({"thesis", "Programa"});
    forEachPart(personal, '|', [this](auto name) {
        const std::string folder = "home/" + std::string(name);
        paths.cacheHome = paths.temporary = tree.url(folder);
        age(folder, 9 * day);
        age(folder + "/thesis", 9 * day);
        EXPECT_EQ(list(), Listed{}) << folder;
    });
    for (const FileURL& around : {FileURL("/"), tree.url()}) {
        paths.cacheHome = paths.temporary = paths.dataHome = around;
        EXPECT_EQ(list(), Listed{}) << around.path();
    }
    paths.cacheHome = tree.url("disk");
    EXPECT_EQ(list(), Listed{"Caché · other disk/other 1"}) << "but not the music";
    paths.cacheHome = tree.url("home/.cache");
    paths.dataHome = paths.configHome = tree.url("home");
    EXPECT_EQ(list(), Listed{}) << "a home full of files is no folder of applications";
    // Folders of settings and state that a variable puts elsewhere.
    for (auto* const own : {&paths.dataHome, &paths.configHome, &paths.stateHome}) {
        tree.file("elsewhere/Programa/thesis", 4096);
        *own = paths.cacheHome = tree.url("elsewhere");
        EXPECT_EQ(list(), Listed{});
        *own = tree.url("none");
    }
}

}  // namespace
