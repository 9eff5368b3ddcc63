#include "Desktop/DesktopApplications.h"
#include "Desktop/DesktopEntry.h"
#include "Desktop/PropertyList.h"
#include "JunkCleaner/InstalledAppTokens.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>

namespace {

TEST(Leftovers, ReduceNamesToLettersAndDigits) {
    const std::pair<const char16_t*, const char16_t*> rows[] = {
        {u"Foo Bar 2", u"foobar2"},
        {u"Photo-Editor_Pro!", u"photoeditorpro"},
        {u"ÁRBOL · Niño", u"árbolniño"},
        {u"a\u0301rbol", u"árbol"},        // decomposed
        {u"नमस्ते", u"नमस्ते"},                // vowel signs belong to their letters
        {u"\U00010400x", u"\U00010428x"},  // beyond the basic plane
        {u"🎵 Música №½Ⅷ", u"música½ⅷ"},    // symbols go, numbers of all kinds stay
        {u"...", u""},
        {u"", u""},
    };
    for (const auto& [text, expected] : rows) {
        EXPECT_EQ(normalized(QString::fromUtf16(text)), QString::fromUtf16(expected));
    }
}

TEST(Leftovers, AreWhatMatchesNothingInstalled) {
    InstalledNames names;
    names.bundles = {QStringLiteral("FooBar"), QStringLiteral("photoeditorpro"), QString(), QStringLiteral("Tk"),
                     QStringLiteral("--")};
    names.programs = {QStringLiteral("id"),          QStringLiteral("ar"),    QStringLiteral("gimp-2.10"),
                      QStringLiteral("org.kde.Foo"), QStringLiteral("Müsli"), QStringLiteral("vlc")};
    names.words = {QStringLiteral("JetBrains"), QStringLiteral("gimp-data")};
    names.identifiers.insert("org.example.Player");
    const InstalledAppTokens tokens(names);
    const std::pair<const char16_t*, bool> rows[] = {
        {u"Foo Bar 2", false},    // contains a bundle's name
        {u"Editor", false},       // is part of one
        {u"abc", false},          // too short to tell
        {u"a-b-c", false},        // likewise, once reduced
        {u"ñandú", true},         // four and more characters are not
        {u"😀😀😀😀ab", false},       // symbols do not count
        {u"gimp", false},         // is part of a program's name
        {u"Marid", true},         // a short program's name is part of nearly everything
        {u"arid", true},          // even twice
        {u"VLC", false},          // too short anyway
        {u"vlcplayer", true},     // longer than the short name
        {u"TkPlotter", false},    // of bundles short names count too
        {u"mu\u0308sli", false},  // the same name, spelt in two characters
        {u"org.kde.foo", false},  // an entry's identifier
        {u"Unrelated", true},
        {u"jetbrains", false},        // a maker's name
        {u"JetBrainsToolbox", true},  // which counts as a whole only
    };
    for (const auto& [name, orphaned] : rows) {
        EXPECT_EQ(tokens.isOrphaned(QString::fromUtf16(name)), orphaned) << QString::fromUtf16(name).toStdString();
    }
    EXPECT_FALSE(tokens.isOrphanedFlatpak("org.example.Player"));
    EXPECT_TRUE(tokens.isOrphanedFlatpak("org.example.Play")) << "identifiers are whole";
}

TEST(DesktopEntry, NamesItsApplication) {
    using Names = std::vector<QString>;
    const auto text = [](const char* words) { return QString::fromUtf8(words); };
    const std::pair<const char*, Names> rows[] = {
        {"[Desktop Entry]\nName=Visor\nExec=/usr/bin/eog %U\nStartupWMClass=Eog\nNoDisplay=true\n"
         "[Desktop Action new]\nName=Otro\nExec=other\n",
         {text("Visor"), text("eog"), text("Eog")}},
        {"[Desktop Entry]\nExec=env -i LANG=C \"A=b c\" \"/opt/My App/run me\" --x\n", {text("run me")}},
        {"[Desktop Entry]\nExec=/usr/bin/env\n", {}},
        {"garbage\n=\n[Desktop Entry\nName=no\n[Desktop Entry]\r\n Name = Sí \r\nExec=\n", {text("Sí")}},
        {"", {}},
    };
    for (const auto& [contents, names] : rows) {
        EXPECT_EQ(namesInDesktopEntry(contents), names) << contents;
    }
}

TEST(DesktopEntry, FindsTheProgramBehindItsWrappers) {
    const std::pair<const char*, const char*> rows[] = {
        {"env -u X LANG=C /usr/bin/foo %U", "foo"},
        {"/usr/bin/flatpak run --branch=stable --command=player --file-forwarding org.x.Player @@u %U @@",
         "player org.x.Player"},
        {"/snap/bin/snap run spotify %U", "spotify"},
        {"sh -c \"cd /opt/x && exec ./runner --flag; other\"", "runner other"},
        {"bash /opt/tool/start.sh", "start.sh start"},
        {"sh -c \"test -f x; [ -f y ] && export A=1; viewer\"", "viewer"},
        {"sudo -u me nice -n 5 firejail --quiet viewer", "viewer"},
        {"taskset -c 0,1 viewer", "viewer"},
        {"taskset 0x3 chrt -r 10 timeout -k 5 10 viewer", "viewer"},
        {"python3 -W ignore /usr/share/app/main-app.py", "main-app.py main-app"},
        {"java -cp a.jar:b.jar -jar /opt/x/Tool.jar", "Tool.jar Tool"},
        {"env", ""},
    };
    for (const auto& [line, programs] : rows) {
        EXPECT_EQ(programsOf(QString::fromUtf8(line)).join(QLatin1Char(' ')), QString::fromUtf8(programs)) << line;
    }
    EXPECT_EQ(piecesOfIdentifier(QStringLiteral("com.github.wwmm.easy_effects-git.Client")).join(QLatin1Char(' ')),
              QStringLiteral("wwmm easy effects"));
}

TEST(PropertyList, NamesItsBundle) {
    const char* const start = R"(<?xml version="1.0"?><!DOCTYPE plist><plist version="1.0"><dict>)";
    const std::pair<std::string, std::optional<QString>> rows[] = {
        {"<key>Other</key><dict><key>CFBundleIdentifier</key><string>no</string></dict>"
         "<key>CFBundleIdentifier</key><string> com.example.Editor </string></dict></plist>",
         QStringLiteral("com.example.Editor")},
        {"<key>CFBundleIdentifier</key><array/></dict></plist>", std::nullopt},
        {"<key>CFBundleName</key><string>x</string>", std::nullopt},
    };
    for (const auto& [rest, identifier] : rows) {
        EXPECT_EQ(bundleIdentifier(QByteArray::fromStdString(start + rest)), identifier) << rest;
    }
    EXPECT_EQ(bundleIdentifier("bplist00\xD1\x01"), std::nullopt);
    EXPECT_EQ(bundleIdentifier({}), std::nullopt);
}

TEST(DesktopApplications, AreFoundWhereTheyAreInstalled) {
    const TemporaryFolder tree;
    tree.text("system/Applications/Photo Editor.app/Contents/Info.plist",
              "<plist><dict><key>CFBundleIdentifier</key><string>com.example.PhotoEditor-Pro</string></dict></plist>");
    tree.folder("home/Applications/Bare.app");
    tree.folder("home/Applications/Vendor/Nested.app");
    tree.folder("home/Applications/Old.APP");
    tree.text("system/usr/share/applications/org.gnome.Nautilus.desktop",
              "[Desktop Entry]\nName=Archivos\nExec=nautilus\nHidden=true\n");
    tree.text("system/usr/share/applications/org.gnome.Music.desktop", "[Desktop Entry]\nName=Música\n");
    tree.text("system/usr/share/applications/kde/konsole.desktop", "\xFF\xFE nonsense");
    tree.text("system/var/lib/flatpak/exports/share/applications/org.x.Player.desktop", "[Desktop Entry]\nName=P\n");
    tree.link("system/usr/share/applications/loop", tree.path("system/usr/share/applications"));
    tree.text("menus/draw.desktop", "");
    tree.link("system/usr/share/applications/more", tree.path("menus"));
    tree.fifo("system/usr/share/applications/pipe.desktop");
    tree.text("huge", std::string(3U << 20U, 'x') + "\n[Desktop Entry]\nName=Hidden far behind\n");
    tree.link("system/usr/share/applications/huge.desktop", tree.path("huge"));
    tree.folder("home/.local/share/flatpak/app/org.x.Game");
    tree.text("system/usr/bin/readme", "");
    tree.text("system/var/lib/dpkg/status",
              "Package: viewer\nStatus: install ok installed\n\nPackage: removed\nStatus: deinstall ok config-files\n");
    tree.text("system/var/lib/snapd/snaps/notepad_17.snap", "");
    tree.text("home/Downloads/Krita-5.2-x86_64.appimage", "");
    tree.text("home/.local/share/Steam/steamapps/libraryfolders.vdf",
              "\"libraryfolders\" { \"0\" {\n\"path\"\t\t\"" + tree.path("games") + "\"\n} }");
    tree.text("games/steamapps/appmanifest_400.acf",
              "\"AppState\" {\n\"name\"\t\"Portal 2\"\n\"installdir\" \"Portal Two\"\n}");
    tree.text("home/.config/lutris/games/quake-1699.yml", "");
    tree.text("home/.config/heroic/gog_store/installed.json",
              R"({"installed":[{"install_path":"/g/Gone Home","x":[1]}]})");
    for (const char* const own :
         {"system/usr/bin/gimp", "home/.cargo/bin/ripper", "home/.local/share/gem/ruby/3.1.0/bin/gemmy"}) {
        tree.text(own, "");
        ASSERT_EQ(chmod(tree.path(own).c_str(), 0755), 0);
    }

    UserFolderPaths paths;
    paths.home = tree.url("home");
    paths.systemRoot = tree.url("system");
    paths.dataHome = tree.url("home/.local/share");
    paths.configHome = tree.url("home/.config");
    ApplicationFolders folders = applicationFolders(paths);
    // What the machine has installed is not what this is about.
    const auto isElsewhere = [&](const FileURL& url) { return !isAtOrBelow(url.path(), tree.path()); };
    EXPECT_GT(std::erase_if(folders.programs, isElsewhere), 0U) << "the PATH";
    std::erase_if(folders.menus, isElsewhere);
    const InstalledNames names = DesktopApplications(folders).names();
    const auto has = [&](const char* name) {
        return std::count(names.programs.begin(), names.programs.end(), QString::fromUtf8(name)) > 0;
    };
    std::vector<QString> bundles = names.bundles;
    std::sort(bundles.begin(), bundles.end());
    EXPECT_EQ(bundles, (std::vector<QString>{QStringLiteral("Bare"), QStringLiteral("Photo Editor"),
                                             QStringLiteral("PhotoEditor-Pro")}));
    for (const char* const name : {"Archivos", "nautilus", "Nautilus", "org.gnome.Nautilus", "kde-konsole", "more-draw",
                                   "P", "Player", "pipe", "huge", "gimp", "ripper", "gemmy", "notepad",
                                   "Krita-5.2-x86_64", "Portal 2", "Portal Two", "quake", "Gone Home"}) {
        EXPECT_TRUE(has(name)) << name;
    }
    for (const char* const name : {"readme", "Hidden far behind", "Nested"}) {
        EXPECT_FALSE(has(name)) << name;
    }
    const auto isApplication = [&](const char* name) {
        return std::count(names.applications.begin(), names.applications.end(), QString::fromUtf8(name)) > 0;
    };
    EXPECT_TRUE(isApplication("Nautilus") && !isApplication("Music"));
    const auto hasWord = [&](const char* word) {
        return std::count(names.words.begin(), names.words.end(), QString::fromUtf8(word)) > 0;
    };
    EXPECT_TRUE(hasWord("konsole") && hasWord("Krita") && hasWord("viewer"));
    EXPECT_FALSE(hasWord("removed") || hasWord("gnome")) << "only settings are left; what many have in common";
    EXPECT_TRUE(names.identifiers.contains("org.x.Game"));
    EXPECT_TRUE(names.identifiers.contains("org.x.Player"));
}

}  // namespace
