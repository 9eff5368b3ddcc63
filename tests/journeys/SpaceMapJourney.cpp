#include "Trash/FreedesktopTrash.h"
#include "support/Journey.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

class SpaceMapJourney : public Journey<FreedesktopTrash> {
protected:
    void SetUp() override {
        tree.file("vídeos/Boda.mov", 40 * 4096);
        tree.file("vídeos/Cumpleaños.mp4", 20 * 4096);
        tree.file("copia.zip", 30 * 4096);
        for (int i = 0; i < 617; ++i) {
            tree.text("fotos/foto " + std::to_string(i) + ".jpg", "");
        }
        chooser.folder = tree.url();
        showWindow();
    }

    /// Whether the file is still there, listed and selected.
    [[nodiscard]] bool isSelected(const char* file) const {
        return driver.state(file, list).selected && std::filesystem::exists(tree.path(file));
    }
};

TEST_F(SpaceMapJourney, FromTheFirstLookToTheTrash) {
    EXPECT_TRUE(driver.state("Inicio", QAccessible::Button).selected);
    ASSERT_TRUE(driver.press("Mapa de espacio"));
    EXPECT_TRUE(driver.waitFor("Elige una carpeta para empezar"));
    EXPECT_FALSE(driver.isEnabled("Analizar"));
    ASSERT_TRUE(driver.press("Elegir carpeta…"));
    EXPECT_TRUE(driver.waitFor("Análisis completado · 0 elementos no accesibles"));
    EXPECT_TRUE(driver.isEnabled("Analizar"));
    for (const std::string& text : {tree.path(), std::string("620"), std::string("369 KB"), std::string("164 KB")}) {
        EXPECT_TRUE(driver.waitFor(text)) << text;
    }

    // Search and category narrow list and map, not the three numbers.
    driver.key("Ctrl+F");
    driver.type("BODA");
    EXPECT_TRUE(waitUntil([&] { return driver.names(list).size() == 1; }));
    EXPECT_TRUE(driver.shows("620"));
    driver.key("Esc");
    ASSERT_TRUE(driver.press("Vídeos"));
    EXPECT_EQ(driver.names(list), (std::vector<std::string>{"Boda.mov, 164 KB", "Cumpleaños.mp4, 82 KB"}));
    ASSERT_TRUE(driver.press("Todo el espacio"));

    // A bubble selects the row.
    ASSERT_TRUE(driver.press("copia.zip"));
    EXPECT_TRUE(isSelected("copia.zip"));
    ASSERT_TRUE(driver.press("Mostrar"));
    EXPECT_EQ(fileManager.revealed, std::vector{tree.url("copia.zip")});

    // While the question is open nothing else acts.
    ASSERT_TRUE(driver.press("A la papelera"));
    ASSERT_TRUE(driver.waitFor("¿Mover “copia.zip” a la papelera?", dialog));
    driver.press("Vídeos");
    driver.press("Boda.mov", list);
    driver.press("Analizar");
    driver.key("Ctrl+1 Ctrl+O");
    EXPECT_EQ(app.store().category(), FileCategory::all);
    EXPECT_FALSE(app.store().isScanning());
    EXPECT_EQ(app.store().mode(), ScanStore::Mode::space);
    EXPECT_EQ(chooser.asked, 1);
    ASSERT_TRUE(driver.press("Cancelar"));
    EXPECT_TRUE(driver.waitForNoDialog());
    EXPECT_TRUE(isSelected("copia.zip"));

    ASSERT_TRUE(driver.press("A la papelera"));
    ASSERT_TRUE(driver.press("Mover a la papelera"));
    for (const char* const text : {"Selecciona un archivo", "619", "246 KB"}) {
        EXPECT_TRUE(driver.waitFor(text)) << text;
    }
    EXPECT_TRUE(waitUntil([&] { return !driver.shows("copia.zip", list); }));
    EXPECT_TRUE(std::filesystem::exists(inTrash("files/copia.zip")));
}

}  // namespace
