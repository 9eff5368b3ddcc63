#include "Desktop/SystemVolumes.h"
#include "Foundation/FileStatus.h"
#include "Foundation/Threads.h"
#include "support/FuseDisk.h"
#include "support/HangDetector.h"
#include "support/Journey.h"

#include <gtest/gtest.h>
#include <QtCore/QProcess>
#include <QtTest/QTest>

#include <set>

namespace {

using Operation = FuseDisk::Operation;

constexpr auto list = QAccessible::ListItem;
constexpr auto dialog = QAccessible::Dialog;

std::string repeated(int times, const std::string& text) {
    std::string result;
    for (int i = 0; i < times; ++i) {
        result += text;
    }
    return result;
}

/// A window whose home has disks in it that do what a test says.
template <class Volumes = FakeVolumes>
class OddDiskFixture : public Journey<FakeTrash, Volumes> {
protected:
    void SetUp() override {
        if (!FuseDisk(this->tree.path("probe")).isMounted()) {
            GTEST_SKIP() << FuseDisk::whyNot;
        }
        this->tree.folder("home/.cache");
        UserFolderPaths& paths = this->userFolders.folders;
        paths.home = this->tree.url("home");
        paths.systemRoot = this->tree.url("system");
        paths.cacheHome = this->tree.url("home/.cache");
        this->chooser.folder = this->tree.url("home");
    }

    /// By now the disk is gone, and whoever waited for it has an answer.
    void TearDown() override {
        EXPECT_FALSE(detector.hasStoodStill());
        EXPECT_TRUE(Threads::waitForAll(std::chrono::seconds(20)));
    }

    /// Opens the window, which is not what is measured.
    void open() {
        this->showWindow();
        detector.restart();
    }

    void analyse() {
        this->driver.key(Qt::Key_2, Qt::ControlModifier);
        this->driver.key(Qt::Key_O, Qt::ControlModifier);
    }

    HangDetector detector;
};

using OddDiskJourney = OddDiskFixture<>;
using OddVolumesJourney = OddDiskFixture<SystemVolumes>;

TEST_F(OddDiskJourney, TheFileWithTheLongNameIsTheOneThatIsMoved) {
    const FuseDisk disk(tree.path("home/disco"));
    const std::string start(31, 's');
    const std::vector<std::string> names = {std::string(256, 'a'), start, start + std::string(256, 's'),
                                            repeated(255, "€")};
    for (const std::string& name : names) {
        tree.file("home/disco/carpeta/" + name, 4096);
    }
    open();
    analyse();
    ASSERT_TRUE(driver.waitFor(QStringLiteral("Análisis completado · 0 elementos no accesibles")));
    std::vector<FileURL> expected;
    for (const std::string& name : names) {
        const FileURL url = tree.url("home/disco/carpeta/" + name);
        expected.push_back(url);
        // The text of one name is the beginning of another one.
        ASSERT_TRUE(driver.press(displayText(name) + QStringLiteral(", 4 KB"), list)) << name;
        ASSERT_TRUE(driver.press(QStringLiteral("Mostrar")));
        EXPECT_EQ(fileManager.revealed, expected);
        ASSERT_TRUE(driver.press(QStringLiteral("A la papelera")));
        ASSERT_TRUE(driver.press(QStringLiteral("Mover a la papelera")));
        ASSERT_TRUE(Driver::waitUntil([&] { return trash.moved.size() == expected.size(); }));
        EXPECT_EQ(trash.moved, expected);
        EXPECT_EQ(trash.identities.back(), fileStatus(url)->identity);
        ASSERT_TRUE(Driver::waitUntil([&] {
            return driver.names(list).size() == names.size() - expected.size() && driver.names(dialog).empty();
        }));
    }
}

TEST_F(OddDiskJourney, AMapIsDrawnWithoutTheDiskThatDoesNotAnswer) {
    FuseDisk disk(tree.path("home/disco"));
    tree.file("home/disco/lejos.mov", 4096);
    tree.file("home/cerca.mov", 8192);
    disk.hang("");
    open();
    analyse();
    ASSERT_TRUE(driver.waitFor(QStringLiteral("Análisis completado · 1 elementos no accesibles")));
    EXPECT_EQ(driver.names(list), std::vector<std::string>{"cerca.mov, 8 KB"});

    disk.release();
    EXPECT_TRUE(driver.waitFor(QStringLiteral("lejos.mov"), list));
    EXPECT_TRUE(driver.waitFor(QStringLiteral("Análisis completado · 0 elementos no accesibles")));
}

TEST_F(OddDiskJourney, ARootThatDoesNotAnswer) {
    FuseDisk disk(tree.path("home/disco"));
    tree.file("home/disco/lejos.mov", 4096);
    disk.hang("");
    chooser.folder = tree.url("home/disco");
    open();
    analyse();
    ASSERT_TRUE(driver.waitFor(QStringLiteral("Análisis completado · 1 elementos no accesibles")));
    EXPECT_TRUE(driver.names(list).empty());
    EXPECT_TRUE(driver.isEnabled(QStringLiteral("Analizar")));
    disk.release();
    EXPECT_TRUE(driver.waitFor(QStringLiteral("lejos.mov"), list));
}

TEST_F(OddDiskJourney, AKindKeepsWhatWasCountedOfIt) {
    FuseDisk disk(tree.path("home/Documents"));
    tree.file("home/Documents/a", 25 * 4096);
    tree.file("home/Documents/muerta/b", 25 * 4096);
    tree.file("home/Music/c", 250 * 4096);
    disk.hang("muerta");
    open();
    ASSERT_TRUE(driver.waitFor(QStringLiteral("1 MB")));
    EXPECT_TRUE(driver.shows(QStringLiteral("102 KB")));
    EXPECT_TRUE(driver.isEnabled(QStringLiteral("Actualizar")));
    EXPECT_FALSE(driver.shows(QStringLiteral("Calculando tamaños… Puede tardar unos minutos")));
    disk.release();
    EXPECT_TRUE(driver.waitFor(QStringLiteral("205 KB")));
}

TEST_F(OddDiskJourney, JunkIsListedAsFarAsItAnswers) {
    FuseDisk disk(tree.path("home/.cache"));
    tree.file("home/.cache/navegador/a", 25 * 4096);
    tree.file("home/.cache/muerta/a", 50 * 4096);
    tree.file("home/Library/Caches/com.example.Editor/a", 4096);
    disk.hang("muerta");
    open();
    ASSERT_TRUE(driver.press(QStringLiteral("Limpiar basura")));
    ASSERT_TRUE(driver.waitFor(QStringLiteral("com.example.Editor"), list));
    EXPECT_EQ(driver.names(list), (std::vector<std::string>{"navegador, 102 KB", "com.example.Editor, 4 KB"}));
    EXPECT_TRUE(driver.isEnabled(QStringLiteral("Analizar basura")));
    disk.release();
    EXPECT_TRUE(driver.waitFor(QStringLiteral("muerta"), list));
    EXPECT_TRUE(driver.shows(QStringLiteral("navegador"), list));
}

TEST_F(OddDiskJourney, APlaceForJunkThatDoesNotAnswer) {
    FuseDisk disk(tree.path("home/.cache"));
    tree.file("home/.cache/navegador/a", 25 * 4096);
    tree.file("home/Library/Caches/com.example.Editor/a", 4096);
    disk.hang("");
    open();
    ASSERT_TRUE(driver.press(QStringLiteral("Limpiar basura")));
    ASSERT_TRUE(driver.waitFor(QStringLiteral("com.example.Editor"), list));
    EXPECT_TRUE(driver.isEnabled(QStringLiteral("Analizar basura")));
    disk.release();
    EXPECT_TRUE(driver.waitFor(QStringLiteral("navegador"), list));
}

TEST_F(OddVolumesJourney, AVolumeAppearsWhenItAnswers) {
    FuseDisk disk(tree.path("home/Lejos"));
    tree.folder("home/Lejos/parte");
    // Only root may do that; the rest is worth looking at without it.
    (void)disk.mountPart("parte", tree.path("home/Parte"));
    disk.hang("");
    open();
    const auto isMeasured = [this] {
        return !app.screens().home()->volumes().empty() && driver.isEnabled(QStringLiteral("Actualizar"));
    };
    ASSERT_TRUE(Driver::waitUntil(isMeasured));
    EXPECT_FALSE(driver.shows(QStringLiteral("Lejos"), QAccessible::Grouping));
    disk.release();
    EXPECT_TRUE(driver.waitFor(QStringLiteral("Lejos"), QAccessible::Grouping));
    disk.hang("");
    ASSERT_TRUE(driver.press(QStringLiteral("Actualizar")));
    EXPECT_TRUE(Driver::waitUntil(isMeasured));
}

TEST_F(OddDiskJourney, ManyVisitsToWhatHangsLeaveTheRestAtWork) {
    FuseDisk disk(tree.path("home/disco"));
    tree.folder("home/disco/Caches");
    tree.file("otra/a.mov", 4096);
    tree.link("home/Documents", tree.path("home/disco"));
    tree.link("home/Library/Caches", tree.path("home/disco/Caches"));
    disk.hang("");
    open();
    for (int visit = 0; visit < 20; ++visit) {
        driver.key(Qt::Key_3, Qt::ControlModifier);
        QTest::qWait(20);
        driver.key(Qt::Key_1, Qt::ControlModifier);
        QTest::qWait(20);
    }
    chooser.folder = tree.url("otra");
    analyse();
    EXPECT_TRUE(driver.waitFor(QStringLiteral("a.mov"), list));
    driver.key(Qt::Key_1, Qt::ControlModifier);
    EXPECT_TRUE(Driver::waitUntil([this] { return driver.isEnabled(QStringLiteral("Actualizar")); }));
}

TEST_F(OddDiskJourney, AMoveThatIsNotAnsweredLeavesTheWindowAlive) {
    FuseDisk disk(tree.path("home/disco"));
    tree.file("home/disco/lejos.mov", 4096);
    tree.file("home/cerca.mov", 8192);
    open();
    analyse();
    ASSERT_TRUE(driver.click(QStringLiteral("lejos.mov"), list));
    disk.hang("");
    driver.key(Qt::Key_Delete);
    ASSERT_TRUE(driver.waitFor(QStringLiteral("¿Mover “lejos.mov” a la papelera?"), dialog));
    driver.key(Qt::Key_Return);
    ASSERT_TRUE(Driver::waitUntil([&] { return driver.names(dialog).empty(); }));
    ASSERT_TRUE(driver.click(QStringLiteral("cerca.mov"), list));
    EXPECT_EQ(app.store().selectedName(), QStringLiteral("cerca.mov"));
    EXPECT_TRUE(trash.moved.empty());
    driver.key(Qt::Key_Q, Qt::ControlModifier);
    EXPECT_TRUE(Driver::waitUntil([this] { return !app.window().isVisible(); }));
}

/// The program itself, because it is its end that is looked at.
TEST(Program, EndsWhileDisksHang) {
    const TemporaryFolder tree;
    tree.folder("home/Library/Caches");
    FuseDisk documents(tree.path("home/Documents"));
    FuseDisk caches(tree.path("home/Library/Caches"));
    if (!documents.isMounted()) {
        GTEST_SKIP() << FuseDisk::whyNot;
    }
    tree.folder("home/Documents/parte");
    (void)documents.mountPart("parte", tree.path("home/Parte"));
    documents.freeze();
    caches.freeze();
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    const std::pair<const char*, const char*> folders[] = {
        {"HOME", "home"},
        {"XDG_DATA_HOME", "home/.local/share"},
        {"XDG_STATE_HOME", "home/.local/state"},
        {"XDG_CACHE_HOME", "home/.cache"},
        {"XDG_CONFIG_HOME", "home/.config"},
    };
    for (const auto& [variable, folder] : folders) {
        environment.insert(QString::fromUtf8(variable), QString::fromStdString(tree.path(folder)));
    }
    QProcess program;
    program.setProcessEnvironment(environment);
    program.start(QStringLiteral(DUSKFERN_PROGRAM), QStringList());
    ASSERT_TRUE(program.waitForStarted());
    const auto xdotool = [](const char* arguments) {
        return QProcess::execute(QStringLiteral("xdotool"), QString::fromUtf8(arguments).split(u' ')) == 0;
    };
    ASSERT_TRUE(xdotool("search --sync --onlyvisible --name ^Duskfern$ windowfocus --sync"));
    // Keys go to the focus and not to a window by name: the program may end before the last key is released.
    ASSERT_TRUE(xdotool("key ctrl+3"));
    QTest::qWait(200);
    ASSERT_TRUE(xdotool("key ctrl+q"));
    EXPECT_TRUE(program.waitForFinished(5'000));
    EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
}

}  // namespace
