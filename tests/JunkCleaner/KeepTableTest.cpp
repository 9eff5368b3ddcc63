#include "JunkCleaner/KeepTable.h"

#include <fnmatch.h>
#include <gtest/gtest.h>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <algorithm>
#include <string>

namespace {

/// What stands between bars.
QStringList names(const char* text) {
    QStringList all;
    for (const QString& name : QString::fromUtf8(text).split(u'|')) {
        all.append(name.trimmed());
    }
    return all;
}

/// Every row of the table is to have an example among what is kept.
void expectKept(KeepList list, const QStringList& kept, const QStringList& lookAlikes) {
    for (const QString& name : kept) {
        EXPECT_NE(reasonToKeep(list, name.toStdString()), "") << qPrintable(name);
        EXPECT_EQ(reasonToKeep(KeepList::none, name.toStdString()), "") << qPrintable(name);
    }
    for (const QString& name : lookAlikes) {
        EXPECT_EQ(reasonToKeep(list, name.toStdString()), "") << qPrintable(name);
    }
    for (const std::string_view pattern : keepPatterns(list)) {
        EXPECT_TRUE(std::any_of(kept.begin(), kept.end(),
                                [&](const QString& name) {
                                    return fnmatch(std::string(pattern).c_str(), qPrintable(name), FNM_CASEFOLD) == 0;
                                }))
            << pattern << " has no example";
    }
}

TEST(KeepTable, KeepsWhatIsNoCache) {
    expectKept(KeepList::caches, names(R"(
        ibus | fcitx | fcitx5 | evolution | doc | obexd | nvim | vim | keepassxc | rclone | pypoetry | JetBrains |
        Google | kwin | plasmashell | plasma_theme_default_v5.kcache | icon-cache.kcache | ksycoca5_es_abc | tracker3
        | gnome-software | sessions | xfce4 | wallpaper | kioexec | emacs
    )"),
               names(R"(
        mozilla | google-chrome | thumbnails | pip | fontconfig | ibus-table | evolution-rss | docs | vimium |
        kwinrules | jetbrains-toolbox | session | sessions2 | wallpapers | kcache | tracker | mesa_shader_cache |
        gnome-software-old | xfce4-old | my.kcache.bak | rclone-browser
    )"));
}

TEST(KeepTable, KeepsWhatBelongsToRunningThings) {
    expectKept(KeepList::temporary, names(R"(
        systemd-private-0a-colord.service-x | snap-private-tmp | ssh-XXXXabc | gpg-abc | dbus-abc | tmux-1000 |
        screens | uscreens | pulse-PKdhtXMmr18n | runtime-ana | hsperfdata_ana | xauth_abc | lu123abc.tmp |
        mozilla_ana0 | Temp-1234-abcd | kde-ana | ksocket-ana | kdecache-ana | snap.firefox.abc | podman-run-1000 |
        containers-user-1000
    )"),
               names(R"(
        systemd | snapshot | sshd | gpg | dbus | tmux | screen | screenshots | pulse | runtime | hsperf | xauth |
        lu.txt | blu1.tmp | mozilla | Temp | temperature | kdenlive-render | old-download.iso
    )"));
}

TEST(KeepTable, KeepsWhatIsSharedOrAPersonsData) {
    expectKept(KeepList::support, names(R"(
        applications | icons | themes | fonts | mime | Trash | keyrings | kwalletd | gnupg | pki | systemd | dbus-1 |
        flatpak | containers | libvirt | gvfs-metadata | tracker | tracker3 | baloo | akonadi |
        akonadi_migration_agent | recently-used.xbel | dconf | pulse | pipewire | wireplumber | autostart | menus |
        mimeapps.list | user-dirs.dirs | user-dirs.locale | gtk-3.0 | gtk-4.0 | glib-2.0 | fontconfig | environment.d
        | kglobalshortcutsrc | kwinrc | kdeglobals | plasma-org.kde.plasma.desktop-appletsrc | plasmashell | xfce4 |
        lxqt | gnome-session | gnome-shell | cinnamon | mozilla | BraveSoftware | google-chrome | google-chrome-beta |
        chromium | microsoft-edge | vivaldi | thunderbird | evolution | geary | Steam | steam | lutris | unity3d |
        godot | JetBrains | keepassxc | Signal | ibus | session | desktop-directories | pixmaps | color-schemes |
        aurorae | sounds | backgrounds | wallpapers | ssh | password-store | snap | snapd | zeitgeist | contacts |
        folks | goa-1.0 | libaccounts-glib | RecentDocuments | user-places.xbel.bak | telepathy | grilo-plugins |
        vulkan | rime | gconf | user-tmpfiles.d | gtkrc-2.0 | qt5ct | qt6ct | QtProject.conf | Kvantum |
        Trolltech.conf | xdg-desktop-portal | xdg-terminals.list | fcitx5 | mozc | hunspell | enchant | kmail.notifyrc
        | kde.org | kdedefaults | kscreen | kactivitymanagerd | knewstuff3 | kservices5 | kxmlgui5 | powerdevilrc |
        bluedevilglobalrc | breezerc | oxygenrc | touchpadrc | startkderc | filetypesrc | emaildefaults |
        emailidentities | klipper | powermanagementprofilesrc | systemsettingsrc | sessions | Thunar | lxsession |
        openbox | monitors.xml~ | nautilus | cinnamon-session | mate | mate-session | budgie-desktop | sway | hypr |
        firefox | librewolf | opera | opera-developer | epiphany | falkon | qutebrowser | torbrowser | kmail2 |
        local-mail | claws-mail | Mailspring | TelegramDesktop | Element | discord | Slack | skypeforlinux | fractal |
        dino | gajim | purple | hexchat | heroic | bottles | wineprefixes | love | renpy | Epic | UnrealEngine |
        PrismLauncher | multimc | retroarch | dolphin-emu | PCSX2 | rpcs3 | ppsspp | citra-emu | mgba | 0ad | minetest
        | scummvm | openttd | Paradox Interactive | Larian Studios | feral-interactive | docker | podman | lxc |
        waydroid | distrobox | gnome-boxes | VirtualBox | vagrant | multipass | Google | nvim | vim | Bitwarden |
        1Password | rclone | Nextcloud | syncthing | kdeconnect | remmina | electrum | monero-project | gnucash | borg
        | restic | gnote | tomboy | joplin-desktop | obsidian | zotero | calibre | shotwell | digikam | darktable |
        Anki2 | pipx | cargo | composer | pnpm | rustup | mise | asdf | opam | conda | mamba | virtualenvs | pypoetry
        | jupyter | emacs | Code | VSCodium | sublime-text-3 | fish | bash-completion | Bitcoin |
        ibus-table | kpeoplevcard | webkitgtk | kcookiejar | configstore | gegl-0.4 | libfm | xsettingsd
    )"),
               names(R"(
        pulse-secure | pulseview | chromium-clone | mozilla-old | google-earth | steamtinkerlaunch | fontsmanager |
        iconset | trashy | dconf-editor | menu | autokey | krita | konversation | karc4 | gnomeish | systemd2 |
        baloney-not | signalbackup | evolution-data | session-saver | kdenlive | material-maker | lxqtool | sounds.old
        | elementary-planner
    )"));
}

}  // namespace
