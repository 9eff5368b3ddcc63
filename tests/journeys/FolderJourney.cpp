#include "support/Journey.h"

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
        openDialog();
    }
    void openDialog() { press("Ctrl+O", "Elegir carpeta", dialog); }

    /// Presses keys, after which this is to be seen.
    void press(const char* keys, const char* name, QAccessible::Role role = list) {
        driver.key(keys);
        ASSERT_TRUE(driver.waitFor(name, role));
    }

    /// Expects that the dialog has gone, and which folder is chosen now.
    void expectChosen(const char* folder) {
        ASSERT_TRUE(driver.waitForNoDialog());
        EXPECT_EQ(app.store().rootURL(), tree.url(folder));
    }
};

TEST_F(FolderJourney, ByKeyboardAlone) {
    ASSERT_TRUE(driver.waitFor("Fotos", list));
    EXPECT_EQ(driver.focused(), "Carpetas");
    EXPECT_EQ(driver.names(list), (Texts{"Fotos", "Música", "Inicio", "Música", "Equipo"}));

    // Round all that the Tab key stops at; nothing is to go back to yet.
    Texts stops;
    do {
        driver.key("Tab");
        stops.push_back(driver.focused());
    } while (stops.back() != "Carpetas" && stops.size() < 20);
    EXPECT_EQ(stops, (Texts{"Cancelar", "Elegir", "Carpeta superior", "Ruta de la carpeta", "Inicio", "Carpetas"}));

    driver.type("fo");
    EXPECT_TRUE(driver.state("Fotos", list).selected);
    press("Return", "2024");
    press("Backspace", "Fotos");
    EXPECT_TRUE(driver.state("Fotos", list).selected);
    press("Alt+Left", "2025");
    press("Alt+Up", "Fotos");

    driver.key("Ctrl+L");
    EXPECT_EQ(driver.focused(), "Ruta de la carpeta");
    driver.type("~/no");
    press("Return", "No existe ninguna carpeta con esa ruta.", QAccessible::AlertMessage);
    driver.key("Ctrl+A");
    driver.type("~/Fotos");
    press("Return", "2025");
    EXPECT_EQ(driver.focused(), "Carpetas");
    driver.key("End Tab Tab Return");
    expectChosen("home/Fotos/2025");
    press("Ctrl+2", "b.txt");

    // It opens where one was, and Esc leaves that as it is.
    openDialog();
    EXPECT_EQ(browser.location(), tree.url("home/Fotos/2025"));
    driver.key("Esc");
    expectChosen("home/Fotos/2025");
}

TEST_F(FolderJourney, ByPointerAlone) {
    ASSERT_TRUE(driver.click("Equipo", list));
    EXPECT_TRUE(waitUntil([this] { return browser.location() == FileURL("/"); }));
    ASSERT_TRUE(driver.click("Atrás", button));
    ASSERT_TRUE(driver.click("Fotos", list, 2));
    ASSERT_TRUE(driver.click("2024", list));
    EXPECT_TRUE(driver.waitFor("Se elegirá “2024”"));
    ASSERT_TRUE(driver.click("Elegir", button));
    expectChosen("home/Fotos/2024");
}

}  // namespace
