#include "Trash/FreedesktopTrash.h"
#include "support/Journey.h"

#include <gtest/gtest.h>
#include <QtTest/QTest>

#include <filesystem>

namespace {

namespace fs = std::filesystem;

/// Something else comes to lie where the item was that a person looks at.
class ReplacedItemJourney : public Journey<FreedesktopTrash> {
protected:
    void SetUp() override {
        tree.folder("home/vídeos");
        chooser.folder = tree.url("home/vídeos");
        showWindow();
    }

    /// Puts a file, or a folder with one in it, in the place of what is there, as programs that save do. What was there
    /// lives on somewhere else, so that its number is not given to another item.
    enum class By { file, folder };
    void replace(const std::string& relative, By by) const {
        const std::string inside = by == By::folder ? "/tesis" : "";
        tree.text("nuevo" + inside, "mine");
        fs::rename(tree.path(relative), tree.path("viejo " + std::to_string(++m_count)));
        fs::rename(tree.path("nuevo"), tree.path(relative));
    }

    void close(const QString& title) {
        ASSERT_TRUE(driver.waitFor(title, dialog));
        driver.key(Qt::Key_Return);
        ASSERT_TRUE(driver.waitForNoDialog());
    }

    [[nodiscard]] static bool isTrashEmpty() {
        const fs::path files = inTrash("files");
        return !fs::exists(files) || fs::is_empty(files);
    }

private:
    mutable int m_count = 0;
};

TEST_F(ReplacedItemJourney, AFileOfTheMapThatIsAnotherOneIsNotMoved) {
    tree.file("home/vídeos/Boda.mov", 4096);
    analyse();
    ASSERT_TRUE(driver.click("Boda.mov", list));
    for (const By by : {By::file, By::folder}) {
        driver.key(Qt::Key_Delete);
        ASSERT_TRUE(driver.waitFor("¿Mover “Boda.mov” a la papelera?", dialog));
        // The disk is asked beside the window.
        QTest::qWait(100);
        replace("home/vídeos/Boda.mov", by);
        driver.key(Qt::Key_Return);
        ASSERT_TRUE(driver.waitFor(trashErrorText(TrashError::changed, tree.url("home/vídeos/Boda.mov"))));
        close(QStringLiteral("No se pudo completar la acción"));
        EXPECT_TRUE(fs::exists(tree.path("home/vídeos/Boda.mov")));
        EXPECT_TRUE(isTrashEmpty());
        EXPECT_TRUE(driver.isSelected("Boda.mov", list));
    }
    // A folder is never moved from here, not even one that was there when the question was asked.
    driver.key(Qt::Key_Delete);
    ASSERT_TRUE(driver.waitFor("¿Mover “Boda.mov” a la papelera?", dialog));
    driver.key(Qt::Key_Return);
    close(QStringLiteral("No se pudo completar la acción"));
    EXPECT_TRUE(fs::exists(tree.path("home/vídeos/Boda.mov/tesis")));
    EXPECT_TRUE(isTrashEmpty());
}

TEST_F(ReplacedItemJourney, JunkThatIsSomethingElseIsNotMoved) {
    tree.file("home/.cache/navegador/a", 4096);
    tree.file("home/.cache/registro.log", 2 * 4096);
    tree.file("home/.cache/igual/a", 3 * 4096);
    tree.file("home/.cache/antes/a", 4 * 4096);
    driver.key(Qt::Key_3, Qt::ControlModifier);
    ASSERT_TRUE(driver.waitFor("navegador", list));
    replace("home/.cache/antes", By::folder);
    ASSERT_TRUE(driver.press("Limpiar todo lo seguro"));
    ASSERT_TRUE(driver.waitFor("¿Mover 4 elementos a la Papelera?", dialog));
    replace("home/.cache/navegador", By::folder);
    replace("home/.cache/registro.log", By::folder);
    driver.key(Qt::Key_Return);
    close(QStringLiteral("Limpieza parcial: 3 elementos no se pudieron mover."));
    EXPECT_TRUE(fs::exists(tree.path("home/.cache/antes/tesis")));
    EXPECT_TRUE(fs::exists(tree.path("home/.cache/navegador/tesis")));
    EXPECT_TRUE(fs::exists(tree.path("home/.cache/registro.log/tesis")));
    EXPECT_FALSE(fs::exists(tree.path("home/.cache/igual")));
    EXPECT_TRUE(waitUntil([this] { return driver.names(list).size() == 3; }));
    EXPECT_FALSE(driver.shows("igual", list));
}

}  // namespace
