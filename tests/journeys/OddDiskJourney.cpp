#include "Desktop/SystemVolumes.h"
#include "Foundation/Threads.h"
#include "support/FuseDisk.h"
#include "support/HangDetector.h"
#include "support/Journey.h"

#include <gtest/gtest.h>
#include <QtCore/QProcess>

namespace {

/// A window whose home has disks in it that do what a test says.
template <class Volumes = FakeVolumes>
class OddDiskFixture : public Journey<FakeTrash, Volumes> {
protected:
    void SetUp() override {
        if (!FuseDisk(this->tree.path("probe")).isMounted()) {
            GTEST_SKIP() << FuseDisk::whyNot;
        }
        this->tree.folder("home/.cache");
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

    [[nodiscard]] bool isAnalysed(int silent) {
        return this->driver.waitFor("Análisis completado · " + std::to_string(silent) + " elementos no accesibles");
    }

    HangDetector detector;
};

using OddDiskJourney = OddDiskFixture<>;
using OddVolumesJourney = OddDiskFixture<SystemVolumes>;

TEST_F(OddDiskJourney, AMapIsDrawnWithoutTheDiskThatDoesNotAnswer) {
    for (const bool isRoot : {false, true}) {
        FuseDisk disk(tree.path(isRoot ? "home/raíz" : "home/disco"));
        tree.file(isRoot ? "home/raíz/lejos.mov" : "home/disco/lejos.mov", 4096);
        tree.file("home/cerca.mov", 8192);
        disk.hang("");
        chooser.folder = tree.url(isRoot ? "home/raíz" : "home");
        open();
        analyse();
        ASSERT_TRUE(isAnalysed(1));
        EXPECT_EQ(driver.names(list).size(), isRoot ? 0U : 1U);
        EXPECT_TRUE(driver.isEnabled("Analizar"));
        disk.release();
        EXPECT_TRUE(driver.waitFor("lejos.mov", list));
        EXPECT_TRUE(isAnalysed(0));
    }
}

TEST_F(OddDiskJourney, JunkIsListedAsFarAsItAnswers) {
    FuseDisk disk(tree.path("home/.cache"));
    tree.file("home/.cache/navegador/a", 25 * 4096);
    tree.file("home/.cache/muerta/a", 50 * 4096);
    tree.file("home/Library/Caches/com.example.Editor/a", 4096);
    open();
    for (const char* const silent : {"muerta", ""}) {
        disk.hang(silent);
        go(Qt::Key_1);
        go(Qt::Key_3);
        ASSERT_TRUE(driver.waitFor("com.example.Editor", list));
        EXPECT_EQ(driver.shows("navegador", list), *silent != '\0');
        EXPECT_FALSE(driver.shows("muerta", list));
        EXPECT_TRUE(driver.isEnabled("Analizar basura"));
        disk.release();
        EXPECT_TRUE(driver.waitFor("muerta", list));
        EXPECT_TRUE(driver.waitFor("navegador", list));
    }
}

TEST_F(OddVolumesJourney, AVolumeAppearsWhenItAnswers) {
    FuseDisk disk(tree.path("home/Lejos"));
    tree.folder("home/Lejos/parte");
    // Only root may do that; the rest is worth looking at without it.
    (void)disk.mountPart("parte", tree.path("home/Parte"));
    disk.hang("");
    open();
    const auto isMeasured = [this] {
        return !app.screens().home()->volumes().empty() && driver.isEnabled("Actualizar");
    };
    ASSERT_TRUE(waitUntil(isMeasured));
    EXPECT_FALSE(driver.shows("Lejos", list));
    disk.release();
    EXPECT_TRUE(driver.waitFor("Lejos", list));
    disk.hang("");
    ASSERT_TRUE(driver.press("Actualizar"));
    EXPECT_TRUE(waitUntil(isMeasured));
}

TEST_F(OddDiskJourney, AMoveThatIsNotAnsweredLeavesTheWindowAlive) {
    FuseDisk disk(tree.path("home/disco"));
    tree.file("home/disco/lejos.mov", 4096);
    tree.file("home/cerca.mov", 8192);
    open();
    analyse();
    ASSERT_TRUE(driver.click("lejos.mov", list));
    disk.hang("");
    driver.key(Qt::Key_Delete);
    ASSERT_TRUE(driver.waitFor("¿Mover “lejos.mov” a la papelera?", dialog));
    driver.key(Qt::Key_Return);
    ASSERT_TRUE(driver.waitForNoDialog());
    ASSERT_TRUE(driver.click("cerca.mov", list));
    EXPECT_EQ(app.store().selectedName(), QStringLiteral("cerca.mov"));
    EXPECT_TRUE(trash.moved.empty());
    driver.key(Qt::Key_Q, Qt::ControlModifier);
    EXPECT_TRUE(waitUntil([this] { return !app.window().isVisible(); }));
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
    const std::pair<const char*, const char*> folders[] = {{"HOME", "home"},
                                                           {"XDG_DATA_HOME", "home/.local/share"},
                                                           {"XDG_STATE_HOME", "home/.local/state"},
                                                           {"XDG_CACHE_HOME", "home/.cache"},
                                                           {"XDG_CONFIG_HOME", "home/.config"}};
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
    EXPECT_EQ(program.exitCode(), 0);
}

}  // namespace
