#include "JunkCleaner/JunkScanner.h"

#include "Desktop/PrivateMounts.h"
#include "Foundation/Threads.h"
#include "support/FakeDesktop.h"
#include "support/TemporaryFolder.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>
#include <QtCore/QDateTime>

#include <filesystem>
#include <future>

namespace {

using Listed = std::vector<std::string>;

class JunkScannerTest : public testing::Test {
protected:
    JunkScannerTest() {
        paths.home = tree.url("home");
        paths.systemRoot = tree.url("system");
        paths.cacheHome = tree.url("home/.cache");
        paths.stateHome = tree.url("home/.local/state");
        paths.dataHome = tree.url("home/.local/share");
        paths.configHome = tree.url("home/.config");
        paths.temporary = tree.url("tmp");
        tree.folder("home");
    }

    /// One line an item, the path beginning in the tree.
    [[nodiscard]] Listed scan() const {
        Listed lines;
        for (const JunkItem& item : JunkScanner::scan(junkPlaces(paths), applications, {}).items) {
            EXPECT_EQ(item.size % 4096, 0);
            EXPECT_EQ(item.isSafeForBulk, item.kind != JunkKind::leftover);
            lines.push_back(JunkKinds::rawValue(item.kind).toStdString() + " · " + item.origin.toStdString() + " " +
                            item.url.path().substr(tree.path().size() + 1) + " " + std::to_string(item.size / 4096));
        }
        return lines;
    }

    void age(const char* relative, qint64 seconds) const {
        const timespec time{QDateTime::currentSecsSinceEpoch() - seconds, 0};
        const timespec times[] = {time, time};
        ASSERT_EQ(utimensat(AT_FDCWD, tree.path(relative).c_str(), times, AT_SYMLINK_NOFOLLOW), 0);
    }

    TemporaryFolder tree;
    UserFolderPaths paths;
    std::shared_ptr<FakeApplications> applications = std::make_shared<FakeApplications>();
};

TEST_F(JunkScannerTest, ListsEveryKindLargestFirst) {
    EXPECT_EQ(scan(), Listed{}) << "no place is there";
    tree.file("home/Library/Caches/com.example.Editor/deep/er/a", 10 * 4096);
    tree.file("home/.cache/thumbnails/a", 9 * 4096);
    tree.file("home/Library/Logs/install.log", 8 * 4096);
    tree.file("home/.local/share/xorg/Xorg.0.log", 7 * 4096);
    tree.file("home/.local/state/log/ends.", 6 * 4096);
    tree.file("home/.npm/_logs/2026.txt", 5 * 4096);
    tree.file("tmp/old", 4 * 4096);
    age("tmp/old", 3 * 86400);
    tree.file("home/Library/Application Support/Editor/a", 3 * 4096);
    tree.file("home/.var/app/org.x.Gone/a", 2 * 4096);
    tree.file("home/.local/share/pintura/a", 4096);
    tree.file("home/.config/com.foo.com.bar", 11 * 4096);
    EXPECT_EQ(scan(), (Listed{
                          "Posible resto · Aplicación no encontrada: com.foo.com.bar home/.config/com.foo.com.bar 11",
                          "Caché · Editor home/Library/Caches/com.example.Editor 10",
                          "Caché · thumbnails home/.cache/thumbnails 9",
                          "Registro · log home/Library/Logs/install.log 8",
                          "Registro · log home/.local/share/xorg/Xorg.0.log 7",
                          "Registro · Registro home/.local/state/log/ends. 6",
                          "Registro · txt home/.npm/_logs/2026.txt 5",
                          "Temporal · old tmp/old 4",
                          "Posible resto · Aplicación no encontrada: Editor home/Library/Application Support/Editor 3",
                          "Posible resto · Aplicación no encontrada: org.x.Gone home/.var/app/org.x.Gone 2",
                          "Posible resto · Aplicación no encontrada: pintura home/.local/share/pintura 1",
                      }));
}

TEST_F(JunkScannerTest, TakesTheLabelFromTheName) {
    const std::pair<const char*, const char*> rows[] = {
        {"com.example.Editor", "Editor"}, {"Editor", "Editor"}, {"install.log", "log"},
        {"com.foo.com.bar", "bar"},       {"ends.", "-"},       {"com.", "-"},
        {"telecom.x", "telex"},
    };
    for (const auto& [name, label] : rows) {
        EXPECT_EQ(originName(QString::fromUtf8(name), QStringLiteral("-")), QString::fromUtf8(label)) << name;
    }
}

TEST_F(JunkScannerTest, LeavesTemporaryFilesTwoDays) {
    constexpr qint64 day = 86400;
    const std::pair<const char*, qint64> files[] = {
        {"tmp/yesterday", day},
        {"tmp/three days", 3 * day},
        {"tmp/nearly", 2 * day - 7200},
        {"tmp/1970", QDateTime::currentSecsSinceEpoch()},
        {"tmp/before 1970", 70 * 365 * day},
        {"tmp/future", -9 * day},
        {"tmp/beyond", 2 * day + 7200},
    };
    std::int64_t size = 1;
    for (const auto& [file, seconds] : files) {
        tree.file(file, 4096 * size++);
        age(file, seconds);
    }
    EXPECT_EQ(scan(), (Listed{"Temporal · beyond tmp/beyond 7", "Temporal · before 1970 tmp/before 1970 5",
                              "Temporal · 1970 tmp/1970 4", "Temporal · three days tmp/three days 2"}));
}

TEST_F(JunkScannerTest, MeasuresWhatAFolderHolds) {
    tree.file("home/.cache/app/a", 4096);
    tree.file("home/.cache/app/sub/b\xFF", 2 * 4096);
    tree.file("home/.cache/app/.hidden", 4 * 4096);
    tree.file("home/.cache/app/Some.app/inside", 8 * 4096);
    tree.file("home/big", 16 * 4096);
    tree.link("home/.cache/app/link", tree.path("home/big"));
    tree.folder("home/.cache/empty");
    tree.file("home/.cache/only hidden/.a", 4096);
    tree.file("home/.cache/Whole.app/inside", 5 * 4096);
    tree.file("home/.cache/file\xFE", 4 * 4096);
    EXPECT_EQ(scan(), (Listed{"Caché · app home/.cache/Whole.app 5", "Caché · file\uFFFD home/.cache/file\xFE 4",
                              "Caché · app home/.cache/app 3"}));
}

TEST_F(JunkScannerTest, PassesOverWhatIsHiddenLinkedOrNoFile) {
    tree.file("home/.cache/.hidden", 4096);
    tree.file("home/.cache/listed", 4096);
    tree.text("home/.cache/.hidden", "listed\n");
    tree.file("home/big/a", 4096);
    tree.link("home/.cache/link", tree.path("home/big"));
    tree.link("home/.config/Elsewhere", tree.path("home/big"));
    tree.fifo("home/.cache/pipe");
    tree.text("home/Library/Logs", "a file where a folder should be");
    tree.link("home/.npm/_logs", tree.path("missing"));
    EXPECT_EQ(scan(), Listed{});
    // A place that is a link itself is looked into.
    tree.link("home/Library/Caches", tree.path("home/big"));
    EXPECT_EQ(scan(), Listed{"Caché · a home/Library/Caches/a 1"});
}

TEST_F(JunkScannerTest, PassesOverOtherUsersEntriesAndMounts) {
    tree.file("home/.cache/own/a", 4096);
    tree.file("home/.cache/mounted/a", 4096);
    tree.file("home/.cache/theirs/a", 4096);
    const std::optional<bool> passed = withPrivateMounts([this] {
        ASSERT_EQ(mount(tree.path("home/.cache/own").c_str(), tree.path("home/.cache/mounted").c_str(), nullptr,
                        MS_BIND, nullptr),
                  0);
        const bool canGive = geteuid() == 0 && chown(tree.path("home/.cache/theirs").c_str(), 65534, 65534) == 0;
        Listed expected{"Caché · own home/.cache/own 1"};
        if (!canGive) {
            expected.push_back("Caché · theirs home/.cache/theirs 1");
        }
        Listed found = scan();
        std::sort(found.begin(), found.end());
        EXPECT_EQ(found, expected);
        ASSERT_EQ(mount("memory", tree.path("home/.cache").c_str(), "tmpfs", 0, nullptr), 0);
        paths.temporary = paths.cacheHome;
        paths.cacheHome = tree.url("none");
        tree.file("home/.cache/old", 4096);
        age("home/.cache/old", 9 * 86400);
        EXPECT_EQ(scan(), Listed{}) << "memory is not disk";
    });
    if (!passed) {
        GTEST_SKIP() << "nobody may mount here";
    }
    EXPECT_TRUE(*passed);
}

TEST_F(JunkScannerTest, ListsAThingOnceForTheEarlierPlace) {
    tree.file("home/.cache/app/a", 4096);
    tree.file("home/.cache/tmp/old", 2 * 4096);
    age("home/.cache/tmp/old", 9 * 86400);
    tree.file("home/.local/share/xorg/Xorg.0.log", 3 * 4096);
    paths.temporary = tree.url("home/.cache/tmp");
    tree.folder("home/Library");
    tree.link("home/Library/Caches", tree.path("home/.cache"));
    EXPECT_EQ(scan(), (Listed{"Registro · log home/.local/share/xorg/Xorg.0.log 3",
                              "Caché · tmp home/Library/Caches/tmp 2", "Caché · app home/Library/Caches/app 1"}));
    paths.configHome = paths.dataHome;
    tree.file("home/.local/share/Pintura", 4 * 4096);
    EXPECT_EQ(scan().front(), "Posible resto · Aplicación no encontrada: Pintura home/.local/share/Pintura 4");
    EXPECT_EQ(scan().size(), 4U);
}

TEST_F(JunkScannerTest, NeverOffersAPersonsFoldersWhateverTheVariablesSay) {
    tree.file("home/Documents/thesis", 4096);
    tree.file("home/notes", 4096);
    tree.file("home/.local/share/Game/save", 4096);
    tree.file("home/.local/lib/module", 4096);
    tree.file("home/.config/Editor/settings", 4096);
    tree.file("disk/Música/song", 4096);
    tree.file("disk/other", 4096);
    paths.music = tree.url("disk/Música");
    applications->installed.programs = {QStringLiteral("game"), QStringLiteral("editor")};
    for (const char* const place : {"home", "home/Documents", "home/.local", "home/.local/share", "home/.config"}) {
        SCOPED_TRACE(place);
        age(place, 9 * 86400);
        paths.cacheHome = paths.temporary = tree.url(place);
        EXPECT_EQ(scan(), Listed{});
    }
    paths.cacheHome = paths.temporary = FileURL("/");
    EXPECT_EQ(scan(), Listed{});
    paths.cacheHome = tree.url();
    EXPECT_EQ(scan(), Listed{}) << "the folder around the home";
    paths.cacheHome = tree.url("disk");
    EXPECT_EQ(scan(), Listed{"Caché · other disk/other 1"}) << "but not the music";
    paths.cacheHome = tree.url("home/.cache");
    paths.dataHome = paths.configHome = tree.url("home");
    EXPECT_EQ(scan(), Listed{}) << "a home full of files is no folder of applications";
}

TEST_F(JunkScannerTest, OffersNothingOfARealDesktopButWhatMayGo) {
    // Folders as GNOME, KDE Plasma and Xfce, browsers, Flatpaks and language tools leave them.
    const char* const folders[] = {
        ".cache/mozilla",
        ".cache/google-chrome",
        ".cache/pip",
        ".cache/go-build",
        ".cache/yarn",
        ".cache/thumbnails",
        ".cache/fontconfig",
        ".cache/mesa_shader_cache",
        ".cache/ibus",
        ".cache/evolution",
        ".cache/tracker3",
        ".cache/gnome-software",
        ".cache/obexd",
        ".cache/JetBrains",
        ".cache/pypoetry",
        ".cache/kwin",
        ".cache/plasmashell",
        ".cache/icon-cache.kcache",
        ".cache/ksycoca5_es_x",
        ".cache/sessions",
        ".cache/xfce4",
        ".cache/keepassxc",
        ".cache/nvim",
        ".cache/rclone",
        ".local/share/applications",
        ".local/share/icons",
        ".local/share/Trash",
        ".local/share/keyrings",
        ".local/share/gnome-shell",
        ".local/share/evolution",
        ".local/share/gvfs-metadata",
        ".local/share/tracker",
        ".local/share/flatpak",
        ".local/share/containers",
        ".local/share/Steam",
        ".local/share/lutris",
        ".local/share/kwalletd",
        ".local/share/baloo",
        ".local/share/akonadi",
        ".local/share/plasma",
        ".local/share/xorg",
        ".local/share/recently-used.xbel",
        ".local/share/TelegramDesktop",
        ".local/share/gnome-boxes",
        ".local/share/nautilus",
        ".local/share/sounds",
        ".local/share/nvim",
        ".config/dconf",
        ".config/pulse",
        ".config/gtk-3.0",
        ".config/gtk-4.0",
        ".config/autostart",
        ".config/mimeapps.list",
        ".config/user-dirs.dirs",
        ".config/kwinrc",
        ".config/kdeglobals",
        ".config/plasma-org.kde.plasma.desktop-appletsrc",
        ".config/xfce4",
        ".config/google-chrome",
        ".config/BraveSoftware",
        ".config/chromium",
        ".config/libreoffice",
        ".config/Code",
        ".config/monitors.xml",
        ".config/gnome-initial-setup-done",
        ".config/systemd",
        ".config/fcitx5",
        ".config/QtProject.conf",
        ".config/Olvidado",
        ".local/share/Juego Viejo",
        ".var/app/org.mozilla.firefox",
        ".var/app/org.gone.App",
    };
    for (const char* const folder : folders) {
        tree.file(std::string("home/") + folder + "/a", 4096);
    }
    applications->installed.programs = {QStringLiteral("libreoffice"), QStringLiteral("code")};
    applications->installed.identifiers.insert("org.mozilla.firefox");
    Listed offered;
    for (const std::string& line : scan()) {
        offered.push_back(line.substr(line.rfind('/', line.rfind(' ')) + 1));
    }
    std::sort(offered.begin(), offered.end());
    EXPECT_EQ(offered,
              (Listed{"Juego Viejo 1", "Olvidado 1", "a 1", "fontconfig 1", "go-build 1", "google-chrome 1",
                      "mesa_shader_cache 1", "mozilla 1", "org.gone.App 1", "pip 1", "thumbnails 1", "yarn 1"}))
        << "the file called a is a log of the X server";
}

TEST_F(JunkScannerTest, OneQuestionThatIsNotAnsweredHoldsUpNoOther) {
    for (int i = 0; i < 12; ++i) {
        tree.file("home/.cache/app" + std::to_string(i) + "/a", 4096);
    }
    const FileURL silent = tree.url("home/.cache/app0");
    const auto answered = std::make_shared<std::promise<void>>();
    const JunkScan found = JunkScanner::scan(junkPlaces(paths), applications, [&silent, answered](const FileURL& url) {
        if (url == silent) {
            answered->get_future().wait();
        }
        return true;
    });
    EXPECT_EQ(found.items.size(), 11U);
    ASSERT_NE(found.lateAnswer, nullptr);
    std::promise<void> told;
    found.lateAnswer->whenAnswered([&told] { told.set_value(); });
    answered->set_value();
    told.get_future().wait();
    EXPECT_TRUE(Threads::waitForAll(std::chrono::seconds(10)));
}

}  // namespace
