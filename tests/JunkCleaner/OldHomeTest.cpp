#include "JunkCleaner/JunkScanner.h"
#include "JunkTree.h"
#include "support/FakeDesktop.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <sstream>

namespace {

/// A home of fifteen years. A line for each thing in it: how the scan judges it, its path, and what of it there is.
///   + offered and ticked   - offered without a tick   ? offered as a leftover   = not offered
constexpr std::string_view oldHome = R"(
+ .cache/mozilla | firefox/x.default/cache2/entries/0A
+ .cache/google-chrome | Default/Cache/f_000001
+ .cache/thumbnails | large/a.png
+ .cache/banshee-1 | covers/a.jpg
+ .cache/software-center | reviews.p
+ .cache/deja-dup | metadata/a.manifest
+ .cache/pip | http/a
+ .cache/yarn | v6/npm-docx/templates/default.docx
+ .cache/upstart | unity7.log
+ .cache/event-sound-cache.tdb.1 |
+ .cache/-rf | a
+ .cache/Copia de fotos 📷 | IMG_0001.JPG
+ .cache/@lbum | a
= .cache/simple-scan | autosave/autosave.book
= .cache/mypaint | autosave/0/stroke.png
= .cache/zsh | history
= .cache/keyring-AbC123 | control
= .cache/tracker | meta.db
= .cache/JetBrains/IdeaIC2019.3/LocalHistory | changes.storageData
+ .cache/JetBrains/IdeaIC2019.3/caches | a
= .cache/evolution/mail | trash/cur/1
- .cache/evolution/calendar | local/cache.db
- .cache/escritorio viejo | Facturas 2011/Curriculum.doc
- .cache/tesis | capitulos/uno.tex
- .cache/tesis | capitulos/.git/logs/HEAD
- .cache/copias | servidor/id_rsa
- .cache/correo | Recibidos.mbox
- .cache/editor | unsaved/borrador.txt
- .cache/cartera | wallet.dat
+ .local/share/xorg/Xorg.0.log |
+ .local/share/xorg/Xorg.0.log.old |
+ .npm/_logs/2016-03-01.log |
+ .npm/_cacache | index-v5/a
+ tmp/orbit-ana | a
- tmp/presupuesto.ods |
= tmp/ssh-AbCdEf | agent.1234
= tmp/audacity-ana | project1/e00/a.au
= .local/share/Trash | files/a
= .local/share/keyrings | login.keyring
= .local/share/kwalletd | kdewallet.kwl
= .local/share/evolution | mail/local/cur/1
= .local/share/akonadi | db_data/ibdata1
= .local/share/local-mail | inbox/cur/1
= .local/share/telepathy | mission-control/accounts.cfg
= .local/share/TpLogger | logs/a/20110101.log
= .local/share/tomboy | a.note
= .local/share/gnote | a.note
= .local/share/shotwell | data/photo.db
= .local/share/zeitgeist | activity.sqlite
= .local/share/nepomuk | repository/main/data/a
= .local/share/Anki2 | User 1/collection.anki2
= .local/share/Steam | userdata/1/70/remote/save.sav
= .local/share/gnucash | books/casa.gnucash
= .local/share/ubuntuone | syncdaemon/a
= .local/share/lbry | lbryum/wallets/default_wallet
= .local/share/data | Mendeley Ltd./Mendeley Desktop/me.sqlite
= .local/share/correo viejo | Enviados.mbox
= .local/share/juego olvidado | savegames/3
= .local/share/contactos | telefono.vcf
= .local/share/servidor | pg/PG_VERSION
= .local/share/digikam | digikam4.db
= .local/share/gedit | a
= .local/share/krita | a
= .local/share/kxmlgui5 | digikam/digikamui5.rc
? .local/share/rhythmbox | rhythmdb.xml
? .local/share/gwibber | a.log
= .local/share/webkit | icondatabase/WebpageIcons.db
? .local/share/F-Spotter | a
? .local/share/Ñandú Studio | a
? .local/share/@rbol | a
= .config/mozilla | a
= .config/google-chrome | Default/Login Data
= .config/chromium | Default/History
= .config/Skype | main.db
= .config/libreoffice | 4/user/backup/a.odt
= .config/gconf | apps/%gconf.xml
= .config/compiz-1 | compizconfig/config
= .config/nautilus | desktop-metadata
= .config/gnome-session | saved-session/a
= .config/gtk-2.0 | gtkfilechooser.ini
= .config/Trolltech.conf |
= .config/kdeglobals |
= .config/kwinrc |
= .config/plasma-org.kde.plasma.desktop-appletsrc |
= .config/ubuntuone | logging.conf
= .config/Bitcoin | Bitcoin-Qt.conf
= .config/Dinero | carteras/wallet.dat
= .config/keepassx | keepassx2.ini
= .config/filezilla | sitemanager.xml
= .config/hexchat | logs/a.log
= .config/Google | AndroidStudio4.0/options/a.xml
= .config/Code | Backups/a
+ .config/Code/CachedData | 1/a
= .config/digikamrc |
= .config/monitors.xml |
= .config/monitors.xml~ |
? .config/banshee-1 | a
? .config/ubuntu-tweak | a
? .config/Pinta | a
? .config/OldElectron | GPUCache/data_0
? .config/vlcj | a
= .config/rncbc.org | Qtractor.conf
= .config/Hardcoded Software | dupeGuru/a
= .config/ruben2020_foss | CodeQuery.conf
? .config/Puddle Inc. | puddletag.conf
? .config/Carpeta | a/Qtractor.conf
+ .var/app/org.gimp.GIMP/cache/gegl-0.4 | swap
= .var/app/org.gimp.GIMP/data | a
? .var/app/org.gone.Toy | cache/a
= .var/app/com.bitwarden.desktop | data/a
= .var/app/org.gone.Writer | data/novela.odt
= Documentos/tesis.odt |
= .mozilla/firefox | x.default/key4.db
= .gconf/apps | %gconf.xml
= .kde/share | config/kmailrc
= .thunderbird/x.default | Mail/Local Folders/Inbox
= .bitcoin | wallet.dat
= .gnupg | secring.gpg
= .purple | logs/a
)";

TEST(OldHome, IsJudgedThingByThing) {
    const JunkTree made;
    std::map<std::string, char> expected;
    std::istringstream table{std::string(oldHome)};
    for (std::string line; std::getline(table, line);) {
        if (line.empty()) {
            continue;
        }
        std::replace(line.begin(), line.end(), '@', '\xC1');  // Names from before UTF-8.
        const std::size_t bar = line.find(" |");
        const std::string path = line.substr(2, bar - 2);
        const std::string item = path.starts_with("tmp/") ? path : "home/" + path;
        const std::string file = bar + 3 < line.size() ? item + '/' + line.substr(bar + 3) : item;
        if (file.ends_with("/logs/HEAD")) {
            made.tree.text(file, "0 1 me <me@x> 1 +0\tcommit (initial): mine\n");
        } else {
            made.tree.file(file, 4096);
        }
        if (item.starts_with("tmp/")) {
            made.age(item, 400 * JunkTree::day);
        }
        expected[item] = line.front();
    }
    const auto applications = std::make_shared<FakeApplications>();
    for (const char* const name :
         {"firefox", "gedit", "digikam", "krita", "code", "vlc", "soffice", "codequery", "qtractor"}) {
        applications->installed.programs.push_back(QString::fromLatin1(name));
    }
    applications->installed.identifiers.insert("org.gimp.GIMP");
    applications->installed.applications = {QStringLiteral("dupeguru")};

    std::map<std::string, char> judged;
    for (const JunkItem& item : JunkScanner::scan(junkPlaces(made.paths), applications, {}).items) {
        judged[item.url.path().substr(made.tree.path().size() + 1)] = item.isSafeForBulk                ? '+'
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
