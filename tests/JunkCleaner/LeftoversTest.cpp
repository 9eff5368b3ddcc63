#include "Desktop/DesktopApplications.h"
#include "Desktop/DesktopEntry.h"
#include "JunkCleaner/InstalledAppTokens.h"
#include "JunkCleaner/NamePattern.h"
#include "JunkTree.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>

namespace {

TEST(Leftovers, ReduceNamesToLettersAndDigits) {
    const std::pair<const char16_t*, const char16_t*> rows[] = {
        {u"Photo-Editor_Pro 2!", u"photoeditorpro2"},
        {u"a\u0301rbol", u"árbol"},        // decomposed
        {u"नमस्ते", u"नमस्ते"},                // vowel signs belong to their letters
        {u"\U00010400x", u"\U00010428x"},  // beyond the basic plane
        {u"🎵 Música №½Ⅷ", u"música½ⅷ"},    // symbols go, numbers of all kinds stay
    };
    for (const auto& [text, expected] : rows) {
        EXPECT_EQ(normalized(QString::fromUtf16(text)), QString::fromUtf16(expected));
    }
}

TEST(Leftovers, AreWhatMatchesNothingInstalled) {
    InstalledNames names;
    names.bundles = {QStringLiteral("FooBar"), QStringLiteral("photoeditorpro"), QStringLiteral("Tk"),
                     QStringLiteral("--")};
    names.programs = {QStringLiteral("id"), QStringLiteral("Müsli"), QStringLiteral("vlc")};
    names.words = {QStringLiteral("JetBrains")};
    names.identifiers.insert("org.example.Player");
    const InstalledAppTokens tokens(names);
    const std::pair<const char16_t*, bool> rows[] = {
        {u"Foo Bar 2", false},        // contains a bundle's name
        {u"Editor", false},           // is part of one
        {u"a-b-c", false},            // too short to tell, once reduced
        {u"ñandú", true},             // four and more characters are not
        {u"😀😀😀😀ab", false},           // symbols do not count
        {u"Marid", true},             // a short program's name is part of nearly everything
        {u"vlcplayer", true},         // longer than the short name
        {u"TkPlotter", false},        // of bundles short names count too
        {u"mu\u0308sli", false},      // the same name, spelt in two characters
        {u"jetbrains", false},        // a maker's name
        {u"JetBrainsToolbox", true},  // which counts as a whole only
    };
    for (const auto& [name, orphaned] : rows) {
        EXPECT_EQ(tokens.isOrphaned(QString::fromUtf16(name)), orphaned) << QString::fromUtf16(name).toStdString();
    }
    EXPECT_FALSE(tokens.isOrphanedFlatpak("org.example.Player"));
    EXPECT_TRUE(tokens.isOrphanedFlatpak("org.example.Play")) << "identifiers are whole";
}

TEST(DesktopEntry, FindsTheProgramBehindItsWrappers) {
    const std::pair<const char*, const char*> rows[] = {
        {"/usr/bin/flatpak run --branch=stable --command=player --file-forwarding org.x.Player @@u %U @@",
         "player org.x.Player"},
        {"/snap/bin/snap run spotify %U", "spotify"},
        {"sh -c \"cd /opt/x && test -f x; [ -f y ] && export A=1; exec ./runner --flag; other\"", "runner other"},
        {"bash /opt/tool/start.sh", "start.sh start"},
        {"sudo -u me nice -n 5 firejail --quiet viewer", "viewer"},
        {"taskset -c 0,1 chrt -r 10 timeout -k 5 10 viewer", "viewer"},
        {"python3 -W ignore /usr/share/app/main-app.py", "main-app.py main-app"},
        {"java -cp a.jar:b.jar -jar /opt/x/Tool.jar", "Tool.jar Tool"},
        {R"(env -u X -i LANG=C "A=b c" "/opt/My App/run me" --x)", "run me"},
        {"/usr/bin/env", ""},
    };
    for (const auto& [line, programs] : rows) {
        EXPECT_EQ(programsOf(QString::fromUtf8(line)).join(QLatin1Char(' ')), QString::fromUtf8(programs)) << line;
    }
    EXPECT_EQ(piecesOfIdentifier(QStringLiteral("com.github.wwmm.easy_effects-git.Client")).join(QLatin1Char(' ')),
              QStringLiteral("wwmm easy effects"));
}

TEST(DesktopApplications, AreFoundWhereTheyAreInstalled) {
    const JunkTree user;
    const TemporaryFolder& tree = user.tree;
    const std::string menus = "system/usr/share/applications/";
    const struct {
        std::string file;
        std::string contents;
        std::string_view programs;  ///< That are known by it, separated by "|".
    } rows[] = {
        {menus + "org.gnome.Nautilus.desktop",
         "[Desktop Entry]\nName=Archivos\nExec=/usr/bin/naut %U\nStartupWMClass=Naut6\nNoDisplay=true\nHidden=true\n"
         "[Desktop Action new]\nName=Otro\nExec=other\n",
         "Archivos|naut|Naut6|Nautilus|org.gnome.Nautilus"},
        {menus + "org.gnome.Music.desktop",
         "garbage\n=\n[Desktop Entry\nName=Otro\n[Desktop Entry]\r\n Name = Música \r\nExec=\n", "Música"},
        {menus + "kde/konsole.desktop", "\xFF\xFE nonsense", "kde-konsole"},
        {"system/var/lib/flatpak/exports/share/applications/org.x.Player.desktop", "", "Player"},
        {"menus/draw.desktop", "", "more-draw"},
        {"menus/huge.desktop", std::string(3U << 20U, 'x') + "\n[Desktop Entry]\nName=Otro\n", "more-huge"},
        {"system/var/lib/snapd/snaps/notepad_17.snap", "", "notepad"},
        {"home/Downloads/Krita-5.2-x86_64.appimage", "", "Krita-5.2-x86_64"},
        {"home/.local/share/Steam/steamapps/libraryfolders.vdf",
         "\"libraryfolders\" { \"0\" {\n\"path\"\t\t\"" + tree.path("games") + "\"\n} }", ""},
        {"games/steamapps/appmanifest_400.acf",
         "\"AppState\" {\n\"name\"\t\"Portal 2\"\n\"installdir\" \"Portal Two\"\n}", "Portal 2|Portal Two"},
        {"home/.config/lutris/games/quake-1699.yml", "", "quake"},
        {"home/.config/heroic/gog_store/installed.json", R"({"installed":[{"install_path":"/g/Gone Home","x":[1]}]})",
         "Gone Home"},
        {"system/usr/bin/gimp", "", "gimp"},
        {"home/.cargo/bin/ripper", "", "ripper"},
        {"home/.local/share/gem/ruby/3.1.0/bin/gemmy", "", "gemmy"},
    };
    for (const auto& row : rows) {
        tree.text(row.file, row.contents);
        ASSERT_EQ(chmod(tree.path(row.file).c_str(), 0755), 0);
    }
    tree.text("system/usr/bin/readme", "");
    tree.link(menus + "loop", tree.path(menus));
    tree.link(menus + "more", tree.path("menus"));
    tree.fifo(menus + "pipe.desktop");
    tree.folder("home/.local/share/flatpak/app/org.x.Game");
    tree.text("system/var/lib/dpkg/status",
              "Package: viewer\nStatus: install ok installed\n\nPackage: removed\nStatus: deinstall ok config-files\n");
    const std::string start = R"(<?xml version="1.0"?><!DOCTYPE plist><plist version="1.0"><dict>)";
    const std::string identifier = "<key>CFBundleIdentifier</key>";
    const std::pair<const char*, std::string> bundles[] = {
        {"Photo Editor.app", start + "<key>Other</key><dict>" + identifier + "<string>no</string></dict>" + identifier +
                                 "<string> com.example.PhotoEditor-Pro </string></dict></plist>"},
        {"Array.app", start + identifier + "<array/></dict></plist>"},
        {"Cut.app", start + "<key>CFBundleName</key><string>x</string>"},
        {"Binary.app", "bplist00\xD1\x01"},
        {"Vendor/Nested.app", ""},
        {"Old.APP", ""},
    };
    for (const auto& [bundle, properties] : bundles) {
        tree.text(std::string("home/Applications/") + bundle + "/Contents/Info.plist", properties);
    }
    tree.folder("system/Applications/Bare.app");

    ApplicationFolders folders = applicationFolders(user.paths);
    // What the machine has installed is not what this is about.
    const auto isElsewhere = [&](const FileURL& url) { return !isAtOrBelow(url.path(), tree.path()); };
    EXPECT_GT(std::erase_if(folders.programs, isElsewhere), 0U) << "the PATH";
    std::erase_if(folders.menus, isElsewhere);
    const InstalledNames names = DesktopApplications(folders).names();

    const auto has = [](const std::vector<QString>& list, std::string_view name) {
        return std::count(list.begin(), list.end(), QString::fromStdString(std::string(name))) > 0;
    };
    for (const auto& row : rows) {
        forEachPart(row.programs, '|',
                    [&](std::string_view name) { EXPECT_TRUE(has(names.programs, name)) << row.file << ": " << name; });
    }
    EXPECT_TRUE(has(names.programs, "pipe"));
    EXPECT_FALSE(has(names.programs, "readme") || has(names.programs, "Otro") || has(names.programs, "other"));
    QStringList known(names.bundles.begin(), names.bundles.end());
    known.sort();
    EXPECT_EQ(known.join(QLatin1Char('|')), QStringLiteral("Array|Bare|Binary|Cut|Photo Editor|PhotoEditor-Pro"));
    EXPECT_TRUE(has(names.applications, "Nautilus") && !has(names.applications, "Music"));
    EXPECT_TRUE(has(names.words, "konsole") && has(names.words, "Krita") && has(names.words, "viewer"));
    EXPECT_FALSE(has(names.words, "removed") || has(names.words, "gnome"))
        << "only settings are left; what many have in common";
    EXPECT_TRUE(names.identifiers.contains("org.x.Game") && names.identifiers.contains("org.x.Player"));
}

}  // namespace
