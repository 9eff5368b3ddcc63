#include "JunkCleaner/KeepTable.h"

#include <fnmatch.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace {

constexpr KeepList lists[] = {KeepList::caches, KeepList::temporary, KeepList::support, KeepList::personal};

bool isKept(KeepList list, const std::string& name) {
    return !reasonToKeep(list, name).empty();
}

/// Each row keeps what its pattern means, in capitals too, and not what only begins or ends like it.
TEST(KeepTable, KeepsWhatItsPatternsMeanAndNoMore) {
    for (const KeepList list : lists) {
        const std::vector<std::string_view> patterns = keepPatterns(list);
        for (const std::string_view pattern : patterns) {
            std::string name(pattern);
            const std::size_t star = name.find('*');
            if (star != std::string::npos) {
                name.replace(star, 1, "x");
            }
            std::string capitals = name;
            std::transform(name.begin(), name.end(), capitals.begin(), [](char c) { return std::toupper(c); });
            EXPECT_TRUE(isKept(list, name) && isKept(list, capitals)) << name;
            EXPECT_FALSE(isKept(KeepList::none, name)) << name;
            for (const std::string& other : {name + "q", "q" + name, name.substr(1), name.substr(0, name.size() - 1)}) {
                EXPECT_EQ(isKept(list, other), std::any_of(patterns.begin(), patterns.end(),
                                                           [&](std::string_view each) {
                                                               return fnmatch(std::string(each).c_str(), other.c_str(),
                                                                              FNM_CASEFOLD) == 0;
                                                           }))
                    << other;
            }
        }
    }
}

/// What nobody could make again, and what running programs would miss at once.
TEST(KeepTable, KeepsWhatIsDearest) {
    const std::vector<const char*> names[] = {
        {"evolution", "rclone", "JetBrains", "keepassxc", "nvim", "emacs", "pypoetry", "ksycoca5_es_x", "x.kcache",
         "simple-scan", "mypaint", "inkscape", "xournalpp", "FreeCAD", "huggingface", "ncspot", "zsh", "x.kdbx"},
        {"ssh-x", "gpg-x", "dbus-x", "tmux-1000", "systemd-private-x", "snap.x", "lu1.tmp", "mozilla_x", "pulse-x",
         "audacity-me", "wireshark_eth0", "krb5cc_1000", "notes.swp", "1_autosave.blend"},
        {"Trash",
         "keyrings",
         "kwalletd",
         "gnupg",
         "ssh",
         "pki",
         "password-store",
         "dconf",
         "kwinrc",
         "mozilla",
         "google-chrome-beta",
         "thunderbird",
         "akonadi",
         "kmail2",
         "Signal",
         "Steam",
         "containers",
         "libvirt",
         "flatpak",
         "Bitwarden",
         "1Password",
         "Bitcoin",
         "electrum",
         "restic",
         "Anki2",
         "joplin-desktop",
         "calibre",
         "Code"},
        {"KeePassXC", "Bitwarden", "thunderbird", "telegram", "Steam", "Authenticator", "ollama", "gnucash",
         "contacts"},
    };
    for (std::size_t i = 0; i < std::size(names); ++i) {
        for (const char* const name : names[i]) {
            EXPECT_TRUE(isKept(lists[i], name)) << name;
        }
    }
    const std::vector<const char*> others[] = {
        {"mozilla", "google-chrome", "thumbnails", "pip", "fontconfig", "mesa_shader_cache", "my.kcache.bak"},
        {"systemd", "snapshot", "lu.txt", "blu1.tmp", "screenshots", "temperature", "old-download.iso"},
        {"pulseview", "chromium-clone", "google-earth", "autokey", "krita", "kdenlive", "gnomeish", "menu", "gimp",
         "GIMP", "vlc", "transmission", "rhythmbox", "gedit", "okular", "blender", "audacity", "clementine"},
        {"applications", "dconf", "gnome-shell", "icons", "kdeglobals", "xfce4", "org.gnome.Maps"},
    };
    for (std::size_t i = 0; i < std::size(others); ++i) {
        for (const char* const name : others[i]) {
            EXPECT_FALSE(isKept(lists[i], name)) << name;
        }
    }
}

}  // namespace
