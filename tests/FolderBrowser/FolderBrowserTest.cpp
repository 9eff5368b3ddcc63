#include "Desktop/PrivateMounts.h"
#include "FolderBrowser/FolderBrowser.h"
#include "support/FakeDesktop.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <QtTest/QTest>

#include <fcntl.h>
#include <sys/mount.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

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

    /// Opens it and waits for the first folder.
    void open(const std::optional<FileURL>& start = std::nullopt) {
        browser.choose({QStringLiteral("Elegir"), start, {}},
                       [this](const std::optional<FileURL>& url) { answers.push_back(url); });
        EXPECT_TRUE(settled());
    }
    /// Waits until the folder that is shown has been listed, or tells why not.
    [[nodiscard]] bool settled() const {
        return QTest::qWaitFor([this] { return browser.folders().rowCount() > 0 || !browser.message().isEmpty(); });
    }
    void select(const char* name) { browser.select(browser.folders().rowOf(name)); }
    [[nodiscard]] std::string selected() const {
        return browser.selectedRow() < 0
                   ? std::string()
                   : browser.folders().folders()[static_cast<std::size_t>(browser.selectedRow())].name;
    }

    TemporaryFolder tree;
    std::vector<FileURL> disks;
    FakeUserFolders userFolders;
    FolderBrowser browser{userFolders, [this] { return disks; }};
    std::vector<std::optional<FileURL>> answers;
};

using Answers = std::vector<std::optional<FileURL>>;

TEST_F(FolderBrowserTest, ChoosesTheFolderThatIsSelectedOrElseTheOneShown) {
    open();
    EXPECT_EQ(browser.location(), tree.url("home"));
    EXPECT_EQ(browser.choice(), QStringLiteral("Inicio"));
    browser.accept();
    select("\xff\n");
    EXPECT_EQ(answers, Answers{tree.url("home")});
    EXPECT_FALSE(browser.isOpen());
    browser.accept();
    EXPECT_EQ(answers.size(), 1U) << "once";

    open(tree.url("home"));
    select("\xff\n");
    EXPECT_EQ(browser.choice(), QStringLiteral("\uFFFD\uFFFD"));
    browser.accept();
    EXPECT_EQ(answers.back(), tree.url("home/\xff\n"));

    open();
    select("Fotos 2");
    browser.enter();
    EXPECT_EQ(browser.choice(), QString()) << "what is not known yet cannot be chosen";
    ASSERT_TRUE(settled());
    browser.enter();
    EXPECT_EQ(answers.back(), tree.url("home/Fotos 2"));

    open();
    browser.cancel();
    browser.cancel();
    EXPECT_EQ(answers.size(), 4U);
    EXPECT_EQ(answers.back(), std::nullopt);
}

TEST_F(FolderBrowserTest, FindsTheWayBackAndUp) {
    open();
    EXPECT_FALSE(browser.canGoBack());
    select("Fotos 2");
    browser.enter();
    ASSERT_TRUE(settled());
    EXPECT_EQ(browser.folders().folders(), std::vector<FolderEntry>{{"2024"}});
    select("2024");
    browser.goUp();
    ASSERT_TRUE(settled());
    EXPECT_EQ(selected(), "Fotos 2") << "where one came from";
    browser.goUp();
    ASSERT_TRUE(settled());
    EXPECT_EQ(selected(), "home");
    browser.goBack();
    browser.goBack();
    ASSERT_TRUE(settled());
    EXPECT_EQ(browser.location(), tree.url("home/Fotos 2"));
    EXPECT_EQ(selected(), "2024");
    browser.goBack();
    EXPECT_FALSE(browser.canGoBack());
    browser.goBack();
    ASSERT_TRUE(settled());
    EXPECT_EQ(selected(), "Fotos 2");

    browser.goTo(QStringLiteral("/"));
    ASSERT_TRUE(QTest::qWaitFor([this] { return browser.location() == FileURL("/"); }));
    EXPECT_FALSE(browser.canGoUp());
    browser.goUp();
    EXPECT_EQ(browser.location(), FileURL("/"));
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
    ASSERT_TRUE(settled());
    EXPECT_EQ(browser.location(), tree.url("other"));
    EXPECT_EQ(browser.currentPlace(), 3);
    EXPECT_EQ(browser.message(), QStringLiteral("No hay carpetas dentro de esta."));
    browser.goToPlace(4);
    browser.goToPlace(-1);
    EXPECT_EQ(browser.location(), tree.url("other"));
}

TEST_F(FolderBrowserTest, GoesWhereATextSaysOrTellsWhyNot) {
    tree.text("home/file", "");
    open();
    const int rows = browser.folders().rowCount();
    const std::vector<std::pair<QString, QString>> wrong = {
        {QStringLiteral("~/gone"), QStringLiteral("No existe ninguna carpeta con esa ruta.")},
        {QStringLiteral("~/file"), QStringLiteral("Esa ruta no es de una carpeta.")},
        {QStringLiteral(" "), QStringLiteral("No existe ninguna carpeta con esa ruta.")},
    };
    for (const auto& [text, error] : wrong) {
        browser.goTo(text);
        EXPECT_TRUE(QTest::qWaitFor([&, &expected = error] { return browser.typedError() == expected; }));
        EXPECT_EQ(browser.location(), tree.url("home"));
        EXPECT_EQ(browser.folders().rowCount(), rows) << "what was shown stays";
        EXPECT_FALSE(browser.canGoBack());
    }
    browser.goTo(QStringLiteral("~/Fotos 2"));
    ASSERT_TRUE(QTest::qWaitFor([this] { return browser.location() == tree.url("home/Fotos 2"); }));
    EXPECT_EQ(browser.typedError(), QString());
    EXPECT_EQ(browser.folders().rowCount(), 1);
    EXPECT_TRUE(browser.canGoBack());

    // The path as it is shown does not spell the bytes of this one.
    open(tree.url("home/\xff\n"));
    browser.goTo(browser.locationText());
    browser.accept();
    EXPECT_EQ(answers.back(), tree.url("home/\xff\n"));
}

TEST_F(FolderBrowserTest, FindsNamesByTheirFirstLetters) {
    tree.folder("home/Fiesta");
    open();
    const std::vector<std::pair<const char*, const char*>> keys = {
        {"f", "Fiesta"}, {"f", "Fotos 2"}, {"f", "Fotos 10"}, {"f", "Fiesta"}, {"x", "Fiesta"},
    };
    for (const auto& [key, name] : keys) {
        EXPECT_TRUE(browser.typeAhead(QString::fromLatin1(key)));
        EXPECT_EQ(selected(), name);
    }
    open();
    for (const QChar key : QStringLiteral("FOTOS 1")) {
        browser.typeAhead(key);
    }
    EXPECT_EQ(selected(), "Fotos 10");
    open();
    EXPECT_FALSE(browser.typeAhead(QStringLiteral(" ")));
    EXPECT_FALSE(browser.typeAhead(QStringLiteral("\b")));
    EXPECT_FALSE(browser.typeAhead({}));
    EXPECT_EQ(browser.selectedRow(), -1);
}

TEST_F(FolderBrowserTest, SaysWhatHappenedToAFolder) {
    open(tree.url("gone"));
    ASSERT_TRUE(QTest::qWaitFor([this] { return browser.folders().rowCount() > 0; }));
    EXPECT_EQ(browser.location(), tree.url("home")) << "a start that is gone";

    select("Fotos 10");
    fs::remove(tree.path("home/Fotos 10"));
    browser.enter();
    ASSERT_TRUE(settled());
    EXPECT_EQ(browser.message(), QStringLiteral("Esta carpeta ya no existe."));
    EXPECT_EQ(browser.choice(), QString());
    browser.accept();
    EXPECT_TRUE(browser.isOpen());
    browser.goBack();
    ASSERT_TRUE(QTest::qWaitFor([this] { return browser.folders().rowCount() > 0; }));
    EXPECT_EQ(browser.folders().rowOf("Fotos 10"), -1);

    if (geteuid() != 0) {
        fs::permissions(tree.path("home/Música"), fs::perms::none);
        browser.goToPlace(1);
        ASSERT_TRUE(settled());
        EXPECT_EQ(browser.message(), QStringLiteral("No tienes permiso para ver esta carpeta."));
    }
}

TEST_F(FolderBrowserTest, StaysUsableBesideAFolderThatDoesNotAnswer) {
    tree.folder("home/silent");
    tree.link("home/link", "silent");
    const std::optional<bool> passed = withPrivateMounts([this] {
        const int server = ::open("/dev/fuse", O_RDWR | O_CLOEXEC);
        const std::string options = "fd=" + std::to_string(server) +
                                    ",rootmode=40000,user_id=" + std::to_string(geteuid()) +
                                    ",group_id=" + std::to_string(getegid());
        if (server < 0 || mount("silent", tree.path("home/silent").c_str(), "fuse", 0, options.c_str()) != 0) {
            _exit(77);
        }
        open();
        EXPECT_GE(browser.folders().rowOf("silent"), 0) << "beside a link into it";
        for (int round = 0; round < 2; ++round) {
            select("silent");
            browser.enter();
            EXPECT_TRUE(
                QTest::qWaitFor([this] { return browser.message() == QStringLiteral("Esta carpeta no responde."); }));
            browser.goTo(QStringLiteral("~/silent"));
            EXPECT_TRUE(QTest::qWaitFor(
                [this] { return browser.typedError() == QStringLiteral("Esta carpeta no responde."); }));
            EXPECT_EQ(browser.choice(), QString());
            browser.goBack();
            EXPECT_TRUE(QTest::qWaitFor([this] { return browser.folders().rowCount() > 0; }));
        }
        EXPECT_LE(std::distance(fs::directory_iterator("/proc/self/task"), fs::directory_iterator()), 4)
            << "it is asked once, and the link once";
        select("silent");
        browser.enter();
        close(server);
        EXPECT_TRUE(QTest::qWaitFor([this] {
            return browser.message() == QStringLiteral("Esta carpeta no se puede abrir.");
        })) << "it answers at last";
    });
    if (!passed) {
        GTEST_SKIP() << "nobody may mount here";
    }
    EXPECT_TRUE(*passed);
}

}  // namespace
