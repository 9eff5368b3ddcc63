#include "Desktop/SystemVolumes.h"
#include "Foundation/FileStatus.h"
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

    void TearDown() override { EXPECT_FALSE(detector.hasStoodStill()); }

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

}  // namespace
