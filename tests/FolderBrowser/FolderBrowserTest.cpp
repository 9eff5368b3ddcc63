#include "FolderBrowser/FolderBrowser.h"

#include "Foundation/Threads.h"
#include "support/FakeDesktop.h"
#include "support/FuseDisk.h"
#include "support/OrdinaryUser.h"
#include "support/WaitUntil.h"

#include <gtest/gtest.h>
#include <QtTest/QSignalSpy>

#include <filesystem>

namespace {

namespace fs = std::filesystem;

using Answers = std::vector<std::optional<FileURL>>;

class FolderBrowserTest : public testing::Test {
protected:
    FolderBrowserTest() {
        for (const char* folder : {"home/Fotos 2/2024", "home/Fotos 10", "home/Música", "home/\xff\n", "other"}) {
            tree.folder(folder);
        }
        userFolders.folders.home = tree.url("home");
        userFolders.folders.systemRoot = FileURL("/");
        userFolders.folders.music = tree.url("home/Música");
        userFolders.folders.desktop = tree.url("home");
    }

    /// The folders of the user are still asked for.
    void TearDown() override { EXPECT_TRUE(Threads::waitForAll(std::chrono::seconds(20))); }

    /// Opens it and waits for the first folder.
    void open(const std::optional<FileURL>& start = std::nullopt) {
        browser.choose({QStringLiteral("Elegir"), start, {}},
                       [this](const std::optional<FileURL>& url) { answers.push_back(url); });
        settle();
    }
    /// Waits until the folder that is shown has been listed, or tells why not.
    void settle() {
        ASSERT_TRUE(waitUntil([this] { return browser.folders().rowCount() > 0 || !browser.message().isEmpty(); }));
    }
    void select(const char* name) { browser.select(browser.folders().rowOf(name)); }
    void enter(const char* name) {
        select(name);
        browser.enter();
        settle();
    }
    [[nodiscard]] QString selected() const { return browser.selectedRow() < 0 ? QString() : browser.choice(); }
    /// Whether it comes to tell this of the folder that is shown, or of a path that is typed.
    [[nodiscard]] bool tells(const char* text) const {
        return waitUntil([&] { return browser.message() == QString::fromUtf8(text); });
    }
    [[nodiscard]] bool tellsOfPath(const char* path, const char* text) {
        browser.goTo(QString::fromUtf8(path));
        return waitUntil([&] { return browser.typedError() == QString::fromUtf8(text); });
    }

    TemporaryFolder tree;
    std::vector<FileURL> disks;
    FakeUserFolders userFolders;
    FolderBrowser browser{userFolders, [this] { return disks; }};
    Answers answers;
};

TEST_F(FolderBrowserTest, ChoosesTheFolderThatIsSelectedOrElseTheOneShown) {
    open();
    EXPECT_EQ(browser.choice(), QStringLiteral("Inicio"));
    browser.accept();
    browser.accept();

    open(tree.url("home"));
    select("\xff\n");
    EXPECT_EQ(browser.choice(), QStringLiteral("\uFFFD\uFFFD"));
    browser.enter();
    settle();
    const QSignalSpy confirmed(&browser, &FolderBrowser::navigated);
    browser.goTo(browser.locationText());
    EXPECT_EQ(confirmed.count(), 1) << "the path that is shown does not spell the bytes, so it is not read";
    browser.accept();

    open();
    select("Fotos 2");
    browser.enter();
    EXPECT_EQ(browser.choice(), QString()) << "what is not known yet cannot be chosen";
    settle();
    browser.enter();

    open();
    browser.cancel();
    EXPECT_EQ(answers, (Answers{tree.url("home"), tree.url("home/\xff\n"), tree.url("home/Fotos 2"), std::nullopt}));
}

TEST_F(FolderBrowserTest, FindsTheWayBackAndUp) {
    open();
    EXPECT_FALSE(browser.canGoBack());
    enter("Fotos 2");
    select("2024");
    for (const char* const from : {"Fotos 2", "home"}) {
        browser.goUp();
        settle();
        EXPECT_EQ(selected(), QLatin1String(from)) << "where one came from";
    }
    browser.goBack();
    browser.goBack();
    settle();
    EXPECT_EQ(browser.location(), tree.url("home/Fotos 2"));
    EXPECT_EQ(selected(), QStringLiteral("2024"));
    browser.goBack();
    EXPECT_FALSE(browser.canGoBack());
    browser.goBack();
    settle();
    EXPECT_EQ(selected(), QStringLiteral("Fotos 2"));
}

TEST_F(FolderBrowserTest, HasPlacesToBeginFrom) {
    disks = {FileURL("/"), tree.url("other")};
    open();
    std::vector<std::string> places;
    for (const FolderPlace& place : browser.places()) {
        places.push_back((place.heading + u'|' + place.name).toStdString() + '|' + place.url.path());
    }
    EXPECT_EQ(places, (std::vector<std::string>{"|Inicio|" + tree.path("home"), "|Música|" + tree.path("home/Música"),
                                                "|Equipo|/", "Discos|other|" + tree.path("other")}));
    EXPECT_EQ(browser.currentPlace(), 0);
    browser.goToPlace(3);
    EXPECT_TRUE(tells("No hay carpetas dentro de esta."));
    EXPECT_EQ(browser.currentPlace(), 3);
}

TEST_F(FolderBrowserTest, GoesWhereATextSaysOrTellsWhyNot) {
    tree.text("home/file", "");
    open();
    for (const auto& [text, error] : {std::pair("~/gone", "No existe ninguna carpeta con esa ruta."),
                                      {"~/file", "Esa ruta no es de una carpeta."},
                                      {" ", "No existe ninguna carpeta con esa ruta."}}) {
        EXPECT_TRUE(tellsOfPath(text, error)) << error;
        EXPECT_GE(browser.folders().rowOf("Fotos 2"), 0) << "what was shown stays";
        EXPECT_FALSE(browser.canGoBack());
    }
    EXPECT_TRUE(tellsOfPath("~/Fotos 2", ""));
    ASSERT_TRUE(waitUntil([&] { return browser.location() == tree.url("home/Fotos 2"); }));
    EXPECT_TRUE(browser.canGoBack());
}

TEST_F(FolderBrowserTest, FindsNamesByTheirFirstLetters) {
    tree.folder("home/Fiesta");
    tree.folder("home/álbum");
    const std::pair<const char*, const char*> rows[] = {
        {"f", "Fiesta"},         {"ff", "Fotos 2"}, {"fff", "Fotos 10"}, {"ffff", "Fiesta"}, {"ffffx", "Fiesta"},
        {"FOTOS 1", "Fotos 10"}, {"ÁL", "álbum"},   {" ", ""},           {"\b", ""},
    };
    for (const auto& [keys, name] : rows) {
        open();
        for (const QChar key : QString::fromUtf8(keys)) {
            EXPECT_EQ(browser.typeAhead(key), *name != '\0');
        }
        EXPECT_EQ(selected(), QString::fromUtf8(name)) << keys;
    }
    EXPECT_FALSE(browser.typeAhead({}));
}

TEST_F(FolderBrowserTest, SaysWhatHappenedToAFolder) {
    open(tree.url("gone"));
    ASSERT_TRUE(waitUntil([&] { return browser.location() == tree.url("home"); })) << "a start that is gone";
    settle();

    fs::remove(tree.path("home/Fotos 10"));
    enter("Fotos 10");
    EXPECT_TRUE(tells("Esta carpeta ya no existe."));
    browser.accept();
    EXPECT_TRUE(browser.isOpen()) << "what is gone cannot be chosen";

    for (const char* const folder : {"", "home", "home/Música"}) {
        OrdinaryUser::own(tree.path(folder));
    }
    fs::permissions(tree.path("home/Música"), fs::perms::none);
    const OrdinaryUser user;
    browser.goToPlace(1);
    EXPECT_TRUE(tells("No tienes permiso para ver esta carpeta."));
}

TEST_F(FolderBrowserTest, StaysUsableBesideAFolderThatDoesNotAnswer) {
    FuseDisk disk(tree.path("home/silent"));
    if (!disk.isMounted()) {
        GTEST_SKIP() << FuseDisk::whyNot;
    }
    tree.link("home/link", "silent");
    disk.hang("");
    const auto countThreads = [] {
        return std::distance(fs::directory_iterator("/proc/self/task"), fs::directory_iterator());
    };
    const auto before = countThreads();
    open();
    for (int round = 0; round < 2; ++round) {
        EXPECT_GE(browser.folders().rowOf("silent"), 0) << "beside a link into it";
        select("silent");
        browser.enter();
        EXPECT_TRUE(tells("Esta carpeta no responde."));
        EXPECT_TRUE(tellsOfPath("~/silent", "Esta carpeta no responde."));
        EXPECT_EQ(browser.choice(), QString());
        browser.goBack();
        settle();
    }
    EXPECT_LE(countThreads(), before + 3) << "it is asked once, and the link once";
    select("silent");
    browser.enter();
    disk.release();
    EXPECT_TRUE(tells("No hay carpetas dentro de esta.")) << "it answers at last";
}

}  // namespace
