#include "support/Journey.h"

#include <gtest/gtest.h>

namespace {

class FolderJourney : public Journey<FakeTrash> {
protected:
    void SetUp() override {
        for (const char* const file : {"Fotos/2024/a", "Fotos/2025/b.txt", "Música/c", "d", ".oculta/e"}) {
            tree.text(std::string("home/") + file, file);
        }
        chooser.next = &browser;
        userFolders.folders.systemRoot = FileURL("/");
        userFolders.folders.music = tree.url("home/Música");
        showWindow();
    }
    void openDialog() {
        driver.key("Ctrl+O");
        ASSERT_TRUE(driver.waitFor("Elegir carpeta", dialog));
    }

    /// Presses keys, after which a row is to be seen.
    void press(const char* keys, const char* row) {
        driver.key(keys);
        ASSERT_TRUE(driver.waitFor(row, list));
    }
};

TEST_F(FolderJourney, ByKeyboardAlone) {
    openDialog();
    ASSERT_TRUE(driver.waitFor("Fotos", list));
    EXPECT_EQ(driver.focused(), "Carpetas");
    EXPECT_EQ(driver.names(list), (std::vector<std::string>{"Fotos", "Música", "Inicio", "Música", "Equipo"}));

    // Round all that the Tab key stops at; nothing is to go back to yet.
    std::vector<std::string> stops;
    do {
        driver.key("Tab");
        stops.push_back(driver.focused());
    } while (stops.back() != "Carpetas" && stops.size() < 20);
    EXPECT_EQ(stops, (std::vector<std::string>{"Cancelar", "Elegir", "Carpeta superior", "Ruta de la carpeta", "Inicio",
                                               "Carpetas"}));

    // Nothing behind it acts.
    driver.key("Ctrl+3 Ctrl+O");
    EXPECT_EQ(app.store().mode(), ScanStore::Mode::home);
    EXPECT_EQ(chooser.asked, 1);

    driver.type("fo");
    EXPECT_TRUE(driver.isSelected("Fotos", list));
    press("Return", "2024");
    press("Backspace", "Fotos");
    EXPECT_TRUE(driver.isSelected("Fotos", list));
    press("Alt+Left", "2025");
    press("Alt+Up", "Fotos");

    driver.key("Ctrl+L");
    EXPECT_EQ(driver.focused(), "Ruta de la carpeta");
    driver.type("~/no");
    driver.key("Return");
    EXPECT_TRUE(driver.waitFor("No existe ninguna carpeta con esa ruta.", QAccessible::AlertMessage));
    driver.key("Ctrl+A");
    driver.type("~/Fotos");
    press("Return", "2025");
    EXPECT_EQ(driver.focused(), "Carpetas");

    driver.key("End");
    EXPECT_TRUE(driver.isSelected("2025", list));
    driver.key("Tab Tab");
    EXPECT_EQ(driver.focused(), "Elegir");
    driver.key("Return");
    ASSERT_TRUE(driver.waitForNoDialog());
    EXPECT_EQ(app.store().rootURL(), tree.url("home/Fotos/2025"));
    driver.key("Ctrl+2");
    EXPECT_EQ(app.store().mode(), ScanStore::Mode::space) << "the window has the keyboard again";
    EXPECT_TRUE(driver.waitFor("b.txt", list));

    // It opens where one was, and Esc leaves that as it is.
    openDialog();
    EXPECT_EQ(browser.location(), tree.url("home/Fotos/2025"));
    driver.key("Esc");
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
    EXPECT_EQ(app.store().rootURL(), tree.url("home/Fotos/2024"));
}

}  // namespace
