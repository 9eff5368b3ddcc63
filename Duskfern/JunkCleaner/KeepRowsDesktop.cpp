#include "JunkCleaner/KeepRows.h"

namespace {

// Compared with what a first session of GNOME, KDE Plasma, Xfce, LXQt, LXDE, Cinnamon, MATE and Budgie writes.
constexpr KeepRow rows[] = {
    {"applications|desktop-directories|menus|desktop-icons*", "menu entries and default programs"},
    {"mime|mimeapps.list|*-mimeapps.list|mimetypes.rdf|filetypesrc", "file types and default programs"},
    {"emaildefaults|xdg-terminals.list|helpers.rc", "the default mail program and terminal"},
    {"icons|pixmaps|icc|swatches|emoji|emojis", "icons and colour profiles"},
    {"themes|color-schemes|aurorae|kstyle|wallpapers|backgrounds|sounds", "themes"},
    {"fonts|fontconfig|fonts.conf", "fonts"},
    {"Trash|trashrc|ktrashrc", "the Trash itself"},
    {"systemd|dbus-1|user-tmpfiles.d|environment.d|plasma-workspace|upstart", "the user's services"},
    {"runit|s6|shepherd|dinit.d|fcron", "the user's services"},
    {"flatpak|snap|snapd|app-info|swcatalog|gnome-software|PackageKit|appimagekit|AppImageLauncher",
     "installed programs"},
    {"gvfs-metadata|gvfs|metadata|user-places.xbel*|recently-used*|RecentDocuments", "metadata of files, recent files"},
    {"tracker*|baloo*|zeitgeist|localsearch|tinysparql|recoll|nepomuk", "the file index"},
    {"dconf|gconf|glib-2.0|xfconf|kcfg|kconf_update*|session_migration*|*.gsettings-data-convert", "settings schemas"},
    {"user-dirs.*|pulse|pipewire*|wireplumber|alsa|asound*|easyeffects|PulseEffects", "paths and sound settings"},
    {"pavucontrol*|jack|qjackctl", "sound settings"},
    {"autostart*|session|sessions|ksmserver*|xsettingsd|xsession*|xprofile|X11|Xresources", "the session"},
    {"gtk-*|gtkrc*|libgnome*|gnome_*|glade*|org.gnome.*|epiphany-extensions", "settings of GTK and GNOME programs"},
    {"qt5ct|qt6ct|QtProject*|Kvantum|Trolltech*|qtcurve", "settings of all Qt programs"},
    {"xdg-desktop-portal*|portals.conf|evolution-data-server|goa-*|libaccounts-glib|libsocialweb",
     "permissions, accounts"},
    {"telepathy|TpLogger|mission-control|Empathy|folks|kpeople*|signond|signon-ui", "online accounts and contacts"},
    {"data|hotkeys|vala-panel|libphonon", "shared by programs; those of Qt 4 keep their data in \"data\""},
    {"grilo-plugins|kcookiejar|WebKit*|configstore|gstreamer*|libquvi*|dleyna*|media-art", "shared by programs"},
    {"gegl-*|babl|libraw", "add-ons of all image programs"},
    {"vulkan|mesa*|drirc|nvidia*|glvnd|monitors.xml*|display*|colord|dispcal*", "screens and their driver"},
    {"autorandr|kanshi|arandr|redshift*|gammastep|wlsunset|ddcutil|DisplayCAL", "screens"},
    {"ibus|ibus-*|fcitx*|mozc|rime|uim*|scim|anthy|skk*|libpinyin|libhangul|m17n*|xkb|onboard",
     "input methods and learnt words"},
    {"hunspell|enchant|aspell*|ispell*|myspell|mythes|libreoffice-dictionaries|LanguageTool*", "dictionaries"},
    {"orca|brltty|speech-dispatcher|espeak*|at-spi2*|mousetweaks|caribou|florence|dasher|kaccess*|jovie|festival",
     "accessibility"},
    {"k*rc|kdeglobals|kdedefaults|kde.org|kded*|k*.d|dolphin*|drkonqirc", "settings of KDE"},
    {"plasma*|powerdevilrc|powermanagement*|bluedevil*|breezerc|oxygenrc|touchpad*rc|startkderc",
     "settings of the desktop"},
    {"device_automounter_kcmrc|systemsettings*|emailidentities|klipper*|latte*|lightlyrc|auroraerc",
     "settings of the desktop"},
    {"kactivitymanagerd*|knewstuff*|kservices*|kservicetypes*|kxmlgui*|kscreen|kpackage|kwin*|ksysguard|krunner*",
     "settings and add-ons of the desktop"},
    {"kdeconnect|kglobalaccel|konsole|khotkeys|solid|phishingurl|sddm", "KDE's"},
    {"gnome-*|nautilus*|tecla|ptyxis|rygel*|geoclue*|gnome_*", "GNOME's"},
    {"cinnamon|cinnamon-*|nemo*|muffin*|spices|blueberry|mintupdate|mintmenu*|linuxmint*", "Cinnamon's"},
    {"Xfce*|Thunar*|xfwm4|xfdashboard|tumbler|catfish|panel-plugin*", "Xfce's"},
    {"mate|mate-*|caja*|marco|mozo|matemenu*|brisk-menu", "MATE's"},
    {"lxqt*|pcmanfm*|libfm*|qterminal*|lxpanel|lxsession*|lxterminal|lxde*|obconf*", "LXQt's and LXDE's"},
    {"budgie*|org.buddiesofbudgie*|com.solus-project*|plank|magpie", "Budgie's"},
    {"deepin*|dde-*|ukui*|peony|pantheon*|io.elementary*|enlightenment|cosmic*|com.system76*|unity*|compiz*",
     "other desktops'"},
    {"openbox|fluxbox|blackbox|icewm|jwm|fvwm*|i3*|sway*|hypr*|wayfire*|river|niri|labwc|bspwm|sxhkd|awesome|dwm*|"
     "qtile|xmonad",
     "settings of the window manager"},
    {"herbstluftwm|spectrwm|leftwm|weston*|mango|dwl|swaync|waybar|polybar*|eww|tint2|lemonbar|rofi|wofi|fuzzel|"
     "dmenu*|ulauncher",
     "settings of the session's bars and menus"},
    {"albert|synapse|conky|dunst*|mako|fnott|picom*|compton*|nitrogen|variety|swaybg|wpaperd|azote|nwg-*|ags|"
     "clipse",
     "settings of the session's small programs"},
    {"clipit|copyq|parcellite|gpaste|diodon|cliphist|greenclip*|xfce4-clipman*", "the clipboard's history"},
    {"procps|htop|btop|bashtop|gotop|bottom|glances|atop*|nvtop|powertop|iotop*|s-tui|radeontop|"
     "gnome-system-monitor",
     "process lists"},
    {"nnn|mc|ranger|lf|vifm|yazi|joshuto|broot|spacefm|xplr|doublecmd|krusader*|rox*|xfe|clifm",
     "settings of file managers"},
    {"msmtp*|isync*|mbsync*|offlineimap*|getmail*|fetchmail*|mpop*|notmuch*|vdirsyncer|khal|khard|davmail|mailcap|"
     "procmail*",
     "mail transports"},
    {"NetworkManager|networkmanagement|nm-*|wpa*|iwd|connman*|blueman*|bluetooth|blueproximity|openvpn*|wireguard|"
     "vpnc*",
     "networks"},
    {"cups|printing*|system-config-printer*|hplip|sane*|epson*|brother", "printers and scanners"},
    {"xorg|nano|less|readline|inputrc|bash*|zsh*|fish|nushell|xonsh|elvish|tcsh|ksh|mksh|starship*|atuin|zoxide",
     "shells, their histories and functions"},
    {"mcfly|hstr|autojump|fasd|powerline*|oh-my-*|sheldon|zinit|zplug|antigen|direnv|thefuck|navi|tldr|cheat",
     "shells, their histories and functions"},
    {"alacritty|kitty|wezterm|foot|ghostty|terminator|guake|yakuake*|termite|xfce4-terminal|urxvt|rxvt*",
     "settings of terminals"},
    {"tmux*|byobu|zellij|dtach|abduco|mosh", "settings of terminals"},
    {"Rygel|minidlna|upmpd*|shairport*|avahi|samba|nfs|autofs|udiskie|udisks2", "shared folders"},
    {"libinput*|touchegg|fusuma|input-remapper*|solaar|piper|ratbag*|openrazer|polychromatic|OpenRGB|ckb-next|"
     "liquidctl|coolercontrol",
     "settings of devices"},
    {"espanso|xbindkeys*|keyd|kmonad|kanata|keynav|warpd|interception*", "keys and texts of the person's own"},
};

}  // namespace

std::span<const KeepRow> desktopKeepRows() {
    return rows;
}
