#include "Foundation/Threads.h"
#include "support/FuseDisk.h"
#include "support/Journey.h"
#include "support/RunningProgram.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QTimer>

namespace {

/// A window whose home has disks in it that do what a test says.
class OddDiskJourney : public Journey<FakeTrash> {
protected:
    void SetUp() override {
        if (!FuseDisk(tree.path("probe")).isMounted()) {
            GTEST_SKIP() << FuseDisk::whyNot;
        }
        tree.folder("home/.cache");
        chooser.folder = tree.url("home");
    }

    /// By now the disk is gone, and whoever waited for it has an answer.
    void TearDown() override {
        look();
        EXPECT_LE(longest, 1500) << "longer than any work of the window takes, even where the machine is busy";
        EXPECT_TRUE(Threads::waitForAll(std::chrono::seconds(20)));
    }

    /// Opens the window, which is not what is measured.
    void open() {
        showWindow();
        QObject::connect(&timer, &QTimer::timeout, [this] { look(); });
        timer.start(10);
        sinceLast.start();
    }

    /// Notes for how long the event loop of the window's thread has stood still. Only tells what hangs from what does
    /// not.
    void look() { longest = std::max(longest, sinceLast.isValid() ? sinceLast.restart() : 0); }

    QTimer timer;
    QElapsedTimer sinceLast;
    qint64 longest = 0;  ///< Milliseconds.
};

TEST_F(OddDiskJourney, AMapIsDrawnWithoutItAndAMoveWaitsForIt) {
    FuseDisk disk(tree.path("home/disco"));
    tree.file("home/disco/lejos.mov", 4096);
    tree.file("home/cerca.mov", 8192);
    disk.hang("");
    open();
    driver.key("Ctrl+2 Ctrl+O");
    expectShown({"Análisis completado · 1 elementos no accesibles"});
    EXPECT_EQ(driver.names(list).size(), 1U);
    EXPECT_TRUE(driver.isEnabled("Analizar"));
    disk.release();
    ASSERT_TRUE(driver.click("lejos.mov", list));
    expectShown({"Análisis completado · 0 elementos no accesibles"});

    disk.hang("");
    driver.key("Del");
    ASSERT_TRUE(driver.waitFor("¿Mover “lejos.mov” a la papelera?", dialog));
    driver.key("Return");
    ASSERT_TRUE(driver.waitForNoDialog());
    ASSERT_TRUE(driver.click("cerca.mov", list));
    EXPECT_EQ(app.store().selectedName(), QStringLiteral("cerca.mov"));
    EXPECT_TRUE(trash.moved.empty());
    driver.key("Ctrl+Q");
    EXPECT_TRUE(waitUntil([this] { return !app.window().isVisible(); }));
}

TEST_F(OddDiskJourney, JunkIsListedAsFarAsItAnswers) {
    FuseDisk disk(tree.path("home/.cache"));
    tree.file("home/.cache/navegador/a", 25 * 4096);
    tree.file("home/.cache/muerta/a", 50 * 4096);
    tree.file("home/Library/Caches/com.example.Editor/a", 4096);
    open();
    for (const char* const silent : {"muerta", ""}) {
        disk.hang(silent);
        driver.key("Ctrl+1 Ctrl+3");
        ASSERT_TRUE(driver.waitFor("com.example.Editor", list));
        EXPECT_EQ(driver.shows("navegador", list), *silent != '\0');
        EXPECT_FALSE(driver.shows("muerta", list));
        EXPECT_TRUE(driver.isEnabled("Analizar basura"));
        disk.release();
        EXPECT_TRUE(driver.waitFor("muerta", list));
        EXPECT_TRUE(driver.waitFor("navegador", list));
    }
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
    documents.freeze();
    caches.freeze();
    RunningProgram program;
    ASSERT_TRUE(program.start(tree.path("home")));
    ASSERT_TRUE(program.xdotool("key ctrl+3"));
    QTest::qWait(200);
    ASSERT_TRUE(program.xdotool("key ctrl+q"));
    EXPECT_TRUE(program.ends());
}

}  // namespace
