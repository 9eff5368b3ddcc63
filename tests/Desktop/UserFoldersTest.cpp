#include "Desktop/UserDirs.h"
#include "Desktop/XdgUserFolders.h"
#include "support/FuseDisk.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <QtCore/QtGlobal>

#include <tuple>

namespace {

TEST(UserDirs, NamesFoldersForAPurpose) {
    const std::pair<std::string, std::optional<FileURL>> cases[] = {
        {" XDG_MUSIC_DIR = \"/disk/m\xFAsica/\" # one\r\n", FileURL("/disk/m\xFAsica")},
        {R"(XDG_MUSIC_DIR="$HOME/a \"b\" \\c")", FileURL(R"(/home/ana/a "b" \c)")},
        {"XDG_MUSIC_DIR=\"/one\"\nXDG_MUSIC_DIR=\"$HOME/\"", std::nullopt},
        {"XDG_MUSIC_DIR=\"$HOMELESS/a\"", std::nullopt},
        {"XDG_MUSIC_DIR=\"/one\"\nXDG_MUSIC_DIR=broken\nXDG_MUSIC_DIR\n# "
         "XDG_MUSIC_DIR=\"/two\"\nXDG_MUSIC_DIR=\"/open\\",
         FileURL("/one")},
    };
    for (const auto& [text, music] : cases) {
        UserFolderPaths paths;
        paths.home = FileURL("/home/ana");
        setNamedFolders(text, paths);
        EXPECT_EQ(paths.music, music) << text;
    }
}

TEST(XdgUserFolders, AreReadAnewAndWithoutWaitingForASilentDisk) {
    const TemporaryFolder folder;
    const QByteArray before = qgetenv("XDG_CONFIG_HOME");
    qputenv("XDG_CONFIG_HOME", folder.path("config").c_str());
    const FileURL home(qgetenv("HOME").toStdString());
    XdgUserFolders folders;
    folder.text("config/user-dirs.dirs", "XDG_MUSIC_DIR=\"$HOME/Música\"\n");
    EXPECT_EQ(folders.paths().music, home.appendingPathComponent("Música"));
    folder.text("config/user-dirs.dirs", "XDG_VIDEOS_DIR=\"/disk/vídeos\"\n");
    EXPECT_EQ(folders.paths().music, std::nullopt);
    EXPECT_EQ(folders.paths().videos, FileURL("/disk/vídeos"));
    EXPECT_EQ(folders.paths().desktop, home.appendingPathComponent("Desktop"));
    {
        FuseDisk disk(folder.path("config"));
        if (disk.isMounted()) {
            disk.freeze();
            EXPECT_EQ(folders.paths().home, home) << "and this returns at all";
        }
    }
    qputenv("XDG_CONFIG_HOME", before);
}

TEST(XdgUserFolders, GoByTheEnvironment) {
    const FileURL home(qgetenv("HOME").toStdString());
    const std::tuple<const char*, FileURL UserFolderPaths::*, FileURL> rows[] = {
        {"XDG_CACHE_HOME", &UserFolderPaths::cacheHome, home.appendingPathComponent(".cache")},
        {"XDG_STATE_HOME", &UserFolderPaths::stateHome, home.appendingPathComponent(".local/state")},
        {"XDG_DATA_HOME", &UserFolderPaths::dataHome, home.appendingPathComponent(".local/share")},
        {"XDG_CONFIG_HOME", &UserFolderPaths::configHome, home.appendingPathComponent(".config")},
        {"TMPDIR", &UserFolderPaths::temporary, FileURL("/tmp")},
    };
    for (const auto& [variable, member, usual] : rows) {
        const QByteArray before = qgetenv(variable);
        qputenv(variable, "/set/to");
        EXPECT_EQ(XdgUserFolders().paths().*member, FileURL("/set/to")) << variable;
        qputenv(variable, "not/absolute");
        EXPECT_EQ(XdgUserFolders().paths().*member, usual) << variable;
        qputenv(variable, before);
    }
}

}  // namespace
