#include "support/Journey.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>

namespace {

namespace fs = std::filesystem;

class FolderJourney : public Journey<FakeTrash> {
protected:
    void SetUp() override {
        for (const char* const file : {"Fotos/2024/a", "Fotos/2025/b.txt", "Música/c", "d", ".oculta/e"}) {
            tree.text(std::string("home/") + file, file);
        }
        chooser.next = &browser;
        userFolders.folders.systemRoot = FileURL("/");
        userFolders.folders.music = tree.url("home/Música");
        before = everything();
        showWindow();
    }
    void TearDown() override { EXPECT_EQ(everything(), before) << "the dialog only looks"; }

    /// Every item, with what it holds and when it was changed.
    [[nodiscard]] std::set<std::string> everything() const {
        std::set<std::string> all;
        for (const auto& entry : fs::recursive_directory_iterator(tree.path())) {
            std::stringstream text;
            text << entry.path() << ' ' << entry.last_write_time().time_since_epoch().count() << ' ';
            if (entry.is_regular_file()) {
                text << std::ifstream(entry.path()).rdbuf();
            }
            all.insert(text.str());
        }
        return all;
    }

    void openDialog() {
        driver.key(Qt::Key_O, Qt::ControlModifier);
        ASSERT_TRUE(driver.waitFor("Elegir carpeta", dialog));
    }

    /// Presses a key, after which a row is to be seen.
    void press(Qt::Key key, const char* row, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        driver.key(key, modifiers);
        ASSERT_TRUE(driver.waitFor(row, list));
    }

    std::set<std::string> before;
};

TEST_F(FolderJourney, ByKeyboardAlone) {
    openDialog();
    ASSERT_TRUE(driver.waitFor("Fotos", list));
    EXPECT_EQ(driver.focused(), "Carpetas");
    EXPECT_EQ(driver.names(list), (std::vector<std::string>{"Fotos", "Música", "Inicio", "Música", "Equipo"}));

    // Round all that the Tab key stops at; nothing is to go back to yet.
    std::vector<std::string> stops;
    do {
        driver.key(Qt::Key_Tab);
        stops.push_back(driver.focused());
    } while (stops.back() != "Carpetas" && stops.size() < 20);
    EXPECT_EQ(stops, (std::vector<std::string>{"Cancelar", "Elegir", "Carpeta superior", "Ruta de la carpeta", "Inicio",
                                               "Carpetas"}));

    // Nothing behind it acts.
    go(Qt::Key_3);
    driver.key(Qt::Key_O, Qt::ControlModifier);
    EXPECT_EQ(app.store().mode(), ScanStore::Mode::home);
    EXPECT_EQ(chooser.asked, 1);

    driver.type("fo");
    EXPECT_TRUE(driver.isSelected("Fotos", list));
    press(Qt::Key_Return, "2024");
    press(Qt::Key_Backspace, "Fotos");
    EXPECT_TRUE(driver.isSelected("Fotos", list));
    press(Qt::Key_Left, "2025", Qt::AltModifier);
    press(Qt::Key_Up, "Fotos", Qt::AltModifier);

    driver.key(Qt::Key_L, Qt::ControlModifier);
    EXPECT_EQ(driver.focused(), "Ruta de la carpeta");
    driver.type("~/no");
    driver.key(Qt::Key_Return);
    EXPECT_TRUE(driver.waitFor("No existe ninguna carpeta con esa ruta.", QAccessible::AlertMessage));
    driver.key(Qt::Key_A, Qt::ControlModifier);
    driver.type("~/Fotos");
    press(Qt::Key_Return, "2025");
    EXPECT_EQ(driver.focused(), "Carpetas");

    driver.key(Qt::Key_End);
    EXPECT_TRUE(driver.isSelected("2025", list));
    driver.key(Qt::Key_Tab);
    driver.key(Qt::Key_Tab);
    EXPECT_EQ(driver.focused(), "Elegir");
    driver.key(Qt::Key_Return);
    ASSERT_TRUE(driver.waitForNoDialog());
    EXPECT_EQ(app.store().rootURL(), tree.url("home/Fotos/2025"));
    go(Qt::Key_2);
    EXPECT_EQ(app.store().mode(), ScanStore::Mode::space) << "the window has the keyboard again";
    EXPECT_TRUE(driver.waitFor("b.txt", list));

    // It opens where one was, and Esc leaves that as it is.
    openDialog();
    EXPECT_EQ(browser.location(), tree.url("home/Fotos/2025"));
    driver.key(Qt::Key_Escape);
    ASSERT_TRUE(driver.waitForNoDialog());
    EXPECT_EQ(app.store().rootURL(), tree.url("home/Fotos/2025"));
}

TEST_F(FolderJourney, ByPointerAlone) {
    openDialog();
    ASSERT_TRUE(driver.click("Equipo", list));
    EXPECT_TRUE(waitUntil([this] { return browser.location() == FileURL("/"); }));
    ASSERT_TRUE(driver.click("Atrás", QAccessible::Button));
    ASSERT_TRUE(driver.click("Fotos", list, 2));
    ASSERT_TRUE(driver.waitFor("2024", list));
    EXPECT_EQ(browser.location(), tree.url("home/Fotos"));
    ASSERT_TRUE(driver.click("Carpeta superior", QAccessible::Button));
    ASSERT_TRUE(driver.click("Fotos", list, 2));
    ASSERT_TRUE(driver.click("2024", list));
    EXPECT_TRUE(driver.waitFor("Se elegirá “2024”"));
    ASSERT_TRUE(driver.click("Elegir", QAccessible::Button));
    ASSERT_TRUE(driver.waitForNoDialog());
    EXPECT_EQ(app.store().rootURL(), tree.url("home/Fotos/2024"));

    openDialog();
    ASSERT_TRUE(driver.click("Cancelar", QAccessible::Button));
    ASSERT_TRUE(driver.waitForNoDialog());
    openDialog();
    app.window().close();
    EXPECT_FALSE(browser.isOpen());
    EXPECT_EQ(app.store().rootURL(), tree.url("home/Fotos/2024"));
}

}  // namespace
