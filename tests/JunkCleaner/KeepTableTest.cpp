#include "JunkCleaner/KeepTable.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using Names = std::vector<std::string>;

void expectKept(KeepList list, const Names& kept, const Names& lookAlikes) {
    for (const std::string& name : kept) {
        EXPECT_NE(reasonToKeep(list, name), "") << name;
        EXPECT_EQ(reasonToKeep(KeepList::none, name), "") << name;
    }
    for (const std::string& name : lookAlikes) {
        EXPECT_EQ(reasonToKeep(list, name), "") << name;
    }
}

TEST(KeepTable, KeepsWhatIsNoCache) {
    expectKept(
        KeepList::caches,
        {"ibus",
         "fcitx",
         "fcitx5",
         "evolution",
         "doc",
         "obexd",
         "nvim",
         "vim",
         "keepassxc",
         "rclone",
         "pypoetry",
         "JetBrains",
         "Google",
         "kwin",
         "plasmashell",
         "plasma_theme_default_v5.kcache",
         "icon-cache.kcache",
         "ksycoca5_es_abc",
         "tracker3",
         "gnome-software",
         "sessions",
         "xfce4",
         "wallpaper"},
        {"mozilla",       "google-chrome", "thumbnails",    "pip",       "fontconfig",        "ibus-table",
         "evolution-rss", "docs",          "vimium",        "kwinrules", "jetbrains-toolbox", "session",
         "sessions2",     "wallpapers",    "kcache",        "tracker",   "mesa_shader_cache", "gnome-software-old",
         "xfce4-old",     "my.kcache.bak", "rclone-browser"});
}

TEST(KeepTable, KeepsWhatBelongsToRunningThings) {
    expectKept(
        KeepList::temporary,
        {"systemd-private-0a-colord.service-x", "snap-private-tmp", "ssh-XXXXabc", "gpg-abc", "dbus-abc", "tmux-1000",
         "screens", "uscreens", "pulse-PKdhtXMmr18n", "runtime-ana", "hsperfdata_ana", "xauth_abc", "lu123abc.tmp",
         "mozilla_ana0", "Temp-1234-abcd", "kde-ana", "ksocket-ana", "kdecache-ana"},
        {"systemd", "snapshot", "sshd", "gpg", "dbus", "tmux", "screen", "screenshots", "pulse", "runtime", "hsperf",
         "xauth", "lu.txt", "blu1.tmp", "mozilla", "Temp", "temperature", "kdenlive-render", "old-download.iso"});
}

TEST(KeepTable, KeepsWhatIsSharedOrAPersonsData) {
    expectKept(
        KeepList::support,
        {"applications",
         "icons",
         "themes",
         "fonts",
         "mime",
         "Trash",
         "keyrings",
         "kwalletd",
         "gnupg",
         "pki",
         "systemd",
         "dbus-1",
         "flatpak",
         "containers",
         "libvirt",
         "gvfs-metadata",
         "tracker",
         "tracker3",
         "baloo",
         "akonadi",
         "akonadi_migration_agent",
         "recently-used.xbel",
         "dconf",
         "pulse",
         "pipewire",
         "wireplumber",
         "autostart",
         "menus",
         "mimeapps.list",
         "user-dirs.dirs",
         "user-dirs.locale",
         "gtk-3.0",
         "gtk-4.0",
         "glib-2.0",
         "fontconfig",
         "environment.d",
         "kglobalshortcutsrc",
         "kwinrc",
         "kdeglobals",
         "plasma-org.kde.plasma.desktop-appletsrc",
         "plasmashell",
         "xfce4",
         "lxqt",
         "gnome-session",
         "gnome-shell",
         "cinnamon",
         "mozilla",
         "BraveSoftware",
         "google-chrome",
         "google-chrome-beta",
         "chromium",
         "microsoft-edge",
         "vivaldi",
         "thunderbird",
         "evolution",
         "geary",
         "Steam",
         "steam",
         "lutris",
         "unity3d",
         "godot",
         "JetBrains",
         "keepassxc",
         "Signal",
         "ibus",
         "session"},
        {"pulse-secure", "pulseview",         "chromium-clone", "mozilla-old",  "google-earth",   "steamtinkerlaunch",
         "fontsmanager", "iconset",           "trashy",         "dconf-editor", "menu",           "autokey",
         "krita",        "konversation",      "karc4",          "gnomeish",     "systemd2",       "baloney-not",
         "signalbackup", "evolution-data",    "session-saver",  "kdenlive",     "material-maker", "lxqtool",
         "sounds.old",   "elementary-planner"});
}

}  // namespace
