#include "JunkCleaner/JunkScanner.h"
#include "JunkTree.h"
#include "support/FakeDesktop.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <sstream>

namespace {

/// A home of fifteen years. How the scan judges what is in it: "+" offered and ticked, "-" offered without a tick, "?"
/// offered as a leftover, "=" not offered. After the mark stand the path, "|" and a file in it, or the path of a
/// folder,
/// ":" and folders in it.
constexpr std::string_view oldHome = R"(
+ .cache/: mozilla google-chrome thumbnails banshee-1 software-center deja-dup pip go-build upstart -rf @lbum my.kcache.bak
+ .cache/yarn | v6/npm-docx/templates/default.docx
+ .cache/Copia de fotos 📷 | IMG_0001.JPG
- .cache/negativos | DSC_0001.NEF
+ .cache/event-sound-cache.tdb.1 |
+ .cache/: fontconfig mesa_shader_cache
= .cache/: ibus tracker3 gnome-software obexd kwin plasmashell icon-cache.kcache ksycoca5_es_x sessions xfce4
= .cache/: simple-scan mypaint inkscape xournalpp FreeCAD buzztrax nvim emacs zsh keyring-AbC123 keepassxc rclone ncspot
= .cache/: huggingface JetBrains/IdeaIC2019.3/LocalHistory evolution/mail pypoetry/virtualenvs x.kdbx
+ .cache/: JetBrains/IdeaIC2019.3/caches pypoetry/artifacts
- .cache/: evolution/calendar
- .cache/escritorio viejo | Facturas 2011/Curriculum.doc
- .cache/tesis | capitulos/uno.tex
- .cache/tesis | capitulos/.git/logs/HEAD
- .cache/copias | servidor/id_rsa
- .cache/correo | Recibidos.mbox
- .cache/editor | unsaved/borrador.txt
- .cache/cartera | wallet.dat
+ .local/share/xorg/Xorg.0.log |
+ .npm/: _logs/2016-03-01.log _cacache
+ tmp/: orbit-ana snapshot screenshots systemd temperature blu1.tmp lu.txt
- tmp/presupuesto.ods |
= tmp/: ssh-AbCdEf gpg-x dbus-x tmux-1000 systemd-private-x snap.x lu1.tmp mozilla_x pulse-x krb5cc_1000 notes.swp
= tmp/: audacity-ana wireshark_eth0 1_autosave.blend
= .local/share/: Trash keyrings kwalletd evolution akonadi local-mail kmail2 telepathy TpLogger tomboy gnote shotwell
= .local/share/: zeitgeist nepomuk baloo tracker zsh Anki2 Steam lutris gnucash ubuntuone password-store containers flatpak
= .local/share/: webkit digikam gedit krita kxmlgui5 applications icons sounds gvfs-metadata gnome-shell nautilus plasma
= .local/share/: recently-used.xbel TelegramDesktop gnome-boxes calibre nvim
= .local/share/data | Mendeley Ltd./Mendeley Desktop/me.sqlite
= .local/share/monedas | lbryum/wallets/default_wallet
= .local/share/correo viejo | Enviados.mbox
= .local/share/juego olvidado | savegames/3
= .local/share/contactos | telefono.vcf
= .local/share/servidor | pg/PG_VERSION
? .local/share/: rhythmbox gwibber F-Spotter @rbol pulseview kdenlive gnomeish clementine
? .local/share/Ñandú Studio | a
= .config/: mozilla google-chrome-beta chromium BraveSoftware Skype gconf compiz-1 nautilus gnome-session gtk-2.0 xfce4
= .config/: Trolltech.conf QtProject.conf kdeglobals kwinrc plasma-org.kde.plasma.desktop-appletsrc ubuntuone keepassx
= .config/: dconf pulse autostart mimeapps.list user-dirs.dirs systemd monitors.xml monitors.xml~ fcitx5 org.gnome.Maps
= .config/: gnome-initial-setup-done filezilla hexchat libreoffice digikamrc Bitwarden 1Password Bitcoin electrum restic
= .config/: Signal joplin-desktop gnupg ssh pki libvirt
= .config/Code | Backups/a
+ .config/Code/CachedData | 1/a
= .config/Google | AndroidStudio4.0/options/a.xml
= .config/Dinero | carteras/wallet.dat
= .config/rncbc.org | Qtractor.conf
= .config/Hardcoded Software | dupeGuru/a
= .config/ruben2020_foss | CodeQuery.conf
? .config/Puddle Inc. | puddletag.conf
? .config/Carpeta | a/Qtractor.conf
? .config/OldElectron | GPUCache/data_0
? .config/: banshee-1 ubuntu-tweak Pinta chromium-clone google-earth autokey menu GIMP transmission okular blender
+ .var/app/: org.inkscape.Inkscape/cache/gegl-0.4
= .var/app/: org.inkscape.Inkscape/data com.bitwarden.desktop org.x.KeePassXC org.x.Steam org.x.GnuCash org.x.Ollama
= .var/app/org.gone.Writer | data/novela.odt
? .var/app/org.gone.Toy | cache/a
= Documentos/tesis.odt |
= .: mozilla/firefox gconf/apps kde/share thunderbird/x.default bitcoin gnupg purple
)";

class OldHome : public testing::Test, protected JunkTree {
protected:
    void make(char judgement, const std::string& path, const std::string& file) {
        const std::string item = path.starts_with("tmp/") ? path : "home/" + path;
        const std::string whole = file.empty() ? item : item + '/' + file;
        if (file.ends_with("/logs/HEAD")) {
            tree.text(whole, "0 1 me <me@x> 1 +0\tcommit (initial): mine\n");
        } else {
            tree.file(whole, 4096);
        }
        if (item.starts_with("tmp/")) {
            age(item, 400 * day);
        }
        expected[item] = judgement;
    }

    void make(std::string line) {
        std::replace(line.begin(), line.end(), '@', '\xC1');  // Names from before UTF-8.
        if (const std::size_t bar = line.find(" |"); bar != std::string::npos) {
            make(line.front(), line.substr(2, bar - 2), line.substr(std::min(bar + 3, line.size())));
        } else if (const std::size_t colon = line.find(':'); colon != std::string::npos) {
            std::istringstream names(line.substr(colon + 1));
            for (std::string name; names >> name;) {
                make(line.front(), line.substr(2, colon - 2) + name, "a");
            }
        }
    }

    std::map<std::string, char> expected;
};

TEST_F(OldHome, IsJudgedThingByThing) {
    std::istringstream table{std::string(oldHome)};
    for (std::string line; std::getline(table, line);) {
        make(line);
    }
    const auto applications = std::make_shared<FakeApplications>();
    for (const char* const name :
         {"firefox", "gedit", "digikam", "krita", "code", "libreoffice", "codequery", "qtractor"}) {
        applications->installed.programs.push_back(QString::fromLatin1(name));
    }
    applications->installed.identifiers.insert("org.inkscape.Inkscape");
    applications->installed.applications = {QStringLiteral("dupeguru")};

    std::map<std::string, char> judged;
    for (const JunkItem& item : JunkScanner::scan(junkPlaces(paths), applications, {}).items) {
        judged[item.url.path().substr(tree.path().size() + 1)] = item.isSafeForBulk                ? '+'
                                                                 : item.kind == JunkKind::leftover ? '?'
                                                                                                   : '-';
    }
    for (const auto& [item, judgement] : judged) {
        EXPECT_TRUE(expected.contains(item)) << "offered: " << judgement << ' ' << item;
    }
    for (const auto& [item, judgement] : expected) {
        EXPECT_EQ(judged.contains(item) ? judged[item] : '=', judgement) << item;
    }
}

}  // namespace
