#include "JunkCleaner/KeepTable.h"

#include <algorithm>
#include <span>

namespace {

struct KeepRow {
    std::string_view pattern;  ///< A name with at most one "*", which matches any text.
    std::string_view reason;
};

constexpr KeepRow cacheRows[] = {
    {"ibus", "the running input method's"},
    {"fcitx*", "the running input method's"},
    {"evolution", "mail that is not on the server"},
    {"doc", "mount point of the document portal"},
    {"obexd", "files received over Bluetooth"},
    {"kioexec", "remote documents that are open and not uploaded yet"},
    {"nvim", "undo history and swap files"},
    {"vim", "undo history and swap files"},
    {"emacs", "unsaved edits"},
    {"keepass*", "a password database's state"},
    {"rclone", "files not yet uploaded"},
    {"pypoetry", "virtual environments in use"},
    {"JetBrains", "Local History, the only copy of unsaved work"},
    {"Google", "Android Studio's Local History"},
    {"kwin", "the running desktop's"},
    {"plasma*", "the running desktop's"},
    {"*.kcache", "the running desktop's"},
    {"ksycoca*", "the running desktop's"},
    {"tracker3", "the running desktop's file index"},
    {"gnome-software", "downloads of updates about to be installed"},
    {"sessions", "the saved session"},
    {"xfce4", "the saved session"},
    {"wallpaper", "wallpapers"},
};

constexpr KeepRow temporaryRows[] = {
    {"systemd-private-*", "a running service's"},
    {"snap-private-tmp", "running snaps'"},
    {"snap.*", "running snaps'"},
    {"ssh-*", "a running agent's socket"},
    {"gpg-*", "a running agent's socket"},
    {"dbus-*", "a session bus's socket"},
    {"tmux-*", "running terminals' sockets"},
    {"screens", "running terminals' sockets"},
    {"uscreens", "running terminals' sockets"},
    {"pulse-*", "the sound server's socket"},
    {"runtime-*", "a session's sockets"},
    {"hsperfdata_*", "running Java programs'"},
    {"xauth_*", "access key of the display"},
    {"lu*.tmp", "an open office document's"},
    {"mozilla_*", "a running browser's"},
    {"Temp-*", "a running browser's"},
    {"kde-*", "the running desktop's"},
    {"ksocket-*", "the running desktop's sockets"},
    {"kdecache-*", "the running desktop's"},
    {"podman-run-*", "running containers'"},
    {"containers-user-*", "running containers'"},
};

constexpr KeepRow supportRows[] = {
    // Used by all applications or by the desktop.
    {"applications", "menu entries and default programs"},
    {"desktop-directories", "the menu's folders"},
    {"icons", "icons"},
    {"pixmaps", "icons"},
    {"themes", "themes"},
    {"color-schemes", "themes"},
    {"aurorae", "themes"},
    {"fonts", "fonts"},
    {"sounds", "sound themes"},
    {"backgrounds", "wallpapers"},
    {"wallpapers", "wallpapers"},
    {"mime", "file types"},
    {"mimeapps.list", "default programs"},
    {"Trash", "the Trash itself"},
    {"keyrings", "passwords"},
    {"kwalletd", "passwords"},
    {"gnupg", "keys"},
    {"pki", "certificates"},
    {"ssh", "keys"},
    {"password-store", "passwords"},
    {"systemd", "the user's services"},
    {"dbus-1", "the user's services"},
    {"flatpak", "installed Flatpaks"},
    {"snap", "installed snaps"},
    {"snapd", "installed snaps"},
    {"gvfs-metadata", "metadata of files"},
    {"tracker*", "the file index"},
    {"baloo*", "the file index"},
    {"zeitgeist", "the file index"},
    {"akonadi*", "mail, contacts and calendars"},
    {"contacts", "contacts"},
    {"kpeoplevcard", "contacts"},
    {"folks", "contacts"},
    {"goa-*", "online accounts"},
    {"libaccounts-glib", "online accounts"},
    {"recently-used.xbel*", "recent files"},
    {"RecentDocuments", "recent files"},
    {"user-places.xbel*", "bookmarks of the file manager"},
    {"telepathy", "online accounts"},
    {"grilo-plugins", "shared data of media players"},
    {"webkitgtk", "shared data of programs with a web view"},
    {"kcookiejar", "shared data of programs with a web view"},
    {"configstore", "settings of all command line tools that use it"},
    {"gegl-*", "add-ons of all image programs"},
    {"libfm", "settings of the file managers"},
    {"xsettingsd", "settings of the session"},
    {"vulkan", "the graphics driver's layers"},
    {"rime", "input methods and learnt words"},
    {"dconf", "every setting of the desktop"},
    {"gconf", "every setting of the desktop"},
    {"pulse", "sound settings"},
    {"pipewire*", "sound settings"},
    {"wireplumber", "sound settings"},
    {"autostart*", "programs started at login"},
    {"menus", "menus"},
    {"user-dirs.*", "paths of the user's folders"},
    {"user-tmpfiles.d", "settings of the session"},
    {"gtk-*", "settings of all GTK programs"},
    {"gtkrc*", "settings of all GTK programs"},
    {"qt5ct", "settings of all Qt programs"},
    {"qt6ct", "settings of all Qt programs"},
    {"QtProject.conf", "settings of all Qt programs"},
    {"Kvantum", "settings of all Qt programs"},
    {"Trolltech.conf", "settings of all Qt programs"},
    {"glib-2.0", "settings schemas"},
    {"fontconfig", "font settings"},
    {"environment.d", "the session's environment"},
    {"xdg-desktop-portal*", "permissions"},
    {"xdg-terminals.list", "the default terminal"},
    {"ibus", "input methods and learnt words"},
    {"ibus-*", "input methods and learnt words"},
    {"fcitx*", "input methods and learnt words"},
    {"mozc", "input methods and learnt words"},
    {"hunspell", "dictionaries"},
    {"enchant", "dictionaries"},
    {"k*rc", "settings of the desktop"},
    {"k*.notifyrc", "settings of the desktop"},
    {"kdeglobals", "settings of the desktop"},
    {"kde.org", "settings of the desktop"},
    {"kdedefaults", "settings of the desktop"},
    {"kded*", "settings of the desktop"},
    {"kscreen", "settings of the desktop"},
    {"kactivitymanagerd*", "settings of the desktop"},
    {"knewstuff*", "add-ons of the desktop"},
    {"kservices*", "add-ons of the desktop"},
    {"kxmlgui*", "settings of all KDE programs"},
    {"plasma*", "settings of the desktop"},
    {"powerdevilrc", "settings of the desktop"},
    {"bluedevilglobalrc", "settings of the desktop"},
    {"breezerc", "settings of the desktop"},
    {"oxygenrc", "settings of the desktop"},
    {"touchpadrc", "settings of the desktop"},
    {"startkderc", "settings of the desktop"},
    {"filetypesrc", "file types"},
    {"emaildefaults", "the default mail program"},
    {"emailidentities", "the user's addresses"},
    {"klipper", "the clipboard history"},
    {"powermanagementprofilesrc", "settings of the desktop"},
    {"systemsettingsrc", "settings of the desktop"},
    {"session", "the saved session"},
    {"sessions", "the saved session"},
    {"xfce4", "settings of the desktop"},
    {"Thunar", "settings of the desktop"},
    {"lxqt", "settings of the desktop"},
    {"lxsession", "settings of the desktop"},
    {"openbox", "settings of the desktop"},
    {"gnome-*", "settings of the desktop"},
    {"monitors.xml*", "settings of the desktop"},
    {"nautilus", "settings of the desktop"},
    {"cinnamon", "settings of the desktop"},
    {"cinnamon-*", "settings of the desktop"},
    {"mate", "settings of the desktop"},
    {"mate-*", "settings of the desktop"},
    {"budgie-desktop", "settings of the desktop"},
    {"sway", "settings of the desktop"},
    {"hypr", "settings of the desktop"},
    // Data of the user.
    {"mozilla", "browser profiles"},
    {"firefox", "browser profiles"},
    {"librewolf*", "browser profiles"},
    {"BraveSoftware", "browser profiles"},
    {"google-chrome*", "browser profiles"},
    {"chromium", "browser profiles"},
    {"microsoft-edge*", "browser profiles"},
    {"vivaldi*", "browser profiles"},
    {"opera", "browser profiles"},
    {"opera-*", "browser profiles"},
    {"epiphany", "browser profiles"},
    {"falkon", "browser profiles"},
    {"qutebrowser", "browser profiles"},
    {"torbrowser", "browser profiles"},
    {"thunderbird", "mail"},
    {"evolution", "mail"},
    {"geary", "mail"},
    {"kmail2", "mail"},
    {"local-mail", "mail"},
    {"claws-mail", "mail"},
    {"Mailspring", "mail"},
    {"Signal", "conversations"},
    {"TelegramDesktop", "conversations"},
    {"Element", "conversations"},
    {"discord", "conversations"},
    {"Slack", "conversations"},
    {"skypeforlinux", "conversations"},
    {"fractal", "conversations"},
    {"dino", "conversations"},
    {"gajim", "conversations"},
    {"purple", "conversations"},
    {"hexchat", "conversations"},
    {"Steam", "games and their saves"},
    {"lutris", "games and their saves"},
    {"heroic", "games and their saves"},
    {"bottles", "games and their saves"},
    {"wineprefixes", "games and their saves"},
    {"unity3d", "games' saves"},
    {"godot", "games' saves and projects"},
    {"love", "games' saves"},
    {"renpy", "games' saves"},
    {"Epic", "games and their saves"},
    {"UnrealEngine", "games' saves and projects"},
    {"PrismLauncher", "games and their saves"},
    {"multimc", "games and their saves"},
    {"retroarch", "games' saves"},
    {"dolphin-emu", "games' saves"},
    {"PCSX2", "games' saves"},
    {"rpcs3", "games' saves"},
    {"ppsspp", "games' saves"},
    {"citra-emu", "games' saves"},
    {"mgba", "games' saves"},
    {"0ad", "games' saves"},
    {"minetest", "worlds"},
    {"scummvm", "games' saves"},
    {"openttd", "games' saves"},
    {"Paradox Interactive", "games' saves"},
    {"Larian Studios", "games' saves"},
    {"feral-interactive", "games' saves"},
    {"containers", "containers"},
    {"docker", "containers"},
    {"podman", "containers"},
    {"lxc", "containers"},
    {"waydroid", "containers"},
    {"distrobox", "containers"},
    {"libvirt", "virtual machines"},
    {"gnome-boxes", "virtual machines"},
    {"VirtualBox", "virtual machines"},
    {"vagrant", "virtual machines"},
    {"multipass", "virtual machines"},
    {"JetBrains", "projects' settings and Local History"},
    {"Google", "projects' settings and Local History"},
    {"nvim", "undo history and swap files"},
    {"vim", "undo history and swap files"},
    {"keepass*", "passwords"},
    {"Bitwarden", "passwords"},
    {"1Password", "passwords"},
    {"rclone", "credentials of online storage"},
    {"Nextcloud", "credentials of online storage"},
    {"syncthing", "credentials of other devices"},
    {"kdeconnect", "credentials of other devices"},
    {"remmina", "credentials of other devices"},
    {"electrum", "wallets"},
    {"monero*", "wallets"},
    {"gnucash", "accounts"},
    {"borg", "keys to backups"},
    {"restic", "keys to backups"},
    {"gnote", "notes"},
    {"tomboy", "notes"},
    {"joplin*", "notes"},
    {"obsidian", "notes"},
    {"zotero", "references"},
    {"calibre", "books"},
    {"shotwell", "albums and edits"},
    {"digikam", "albums and edits"},
    {"darktable", "albums and edits"},
    {"Anki2", "cards and progress"},
    {"pipx", "installed programs"},
    {"cargo", "installed programs"},
    {"composer", "installed programs"},
    {"pnpm", "installed programs"},
    {"rustup", "installed languages"},
    {"mise", "installed languages"},
    {"asdf", "installed languages"},
    {"opam", "installed languages"},
    {"conda", "environments of projects"},
    {"mamba", "environments of projects"},
    {"virtualenv*", "environments of projects"},
    {"pypoetry", "environments of projects"},
    {"jupyter", "kernels of notebooks"},
    {"emacs", "unsaved edits"},
    {"Code", "unsaved edits"},
    {"VSCodium", "unsaved edits"},
    {"sublime-text*", "unsaved edits"},
    {"fish", "a shell's history and functions"},
    {"bash-completion", "the user's shell completions"},
    {"Bitcoin", "wallets"},
};

/// ASCII lower case, independent of the locale (Turkish maps "I" differently).
char folded(char character) {
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

bool isSame(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) { return folded(x) == folded(y); });
}

bool matches(std::string_view name, std::string_view pattern) {
    const std::size_t star = pattern.find('*');
    if (star == std::string_view::npos) {
        return isSame(name, pattern);
    }
    const std::string_view tail = pattern.substr(star + 1);
    return name.size() >= star + tail.size() && isSame(name.substr(0, star), pattern.substr(0, star)) &&
           isSame(name.substr(name.size() - tail.size()), tail);
}

std::span<const KeepRow> rowsOf(KeepList list) {
    switch (list) {
        case KeepList::caches:
            return cacheRows;
        case KeepList::temporary:
            return temporaryRows;
        case KeepList::support:
            return supportRows;
        case KeepList::none:
            break;
    }
    return {};
}

}  // namespace

std::string_view reasonToKeep(KeepList list, std::string_view name) {
    const auto rows = rowsOf(list);
    const auto row = std::find_if(rows.begin(), rows.end(),
                                  [&](const KeepRow& candidate) { return matches(name, candidate.pattern); });
    return row == rows.end() ? std::string_view() : row->reason;
}

std::vector<std::string_view> keepPatterns(KeepList list) {
    std::vector<std::string_view> patterns;
    for (const KeepRow& row : rowsOf(list)) {
        patterns.push_back(row.pattern);
    }
    return patterns;
}
