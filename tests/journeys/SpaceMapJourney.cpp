#include "support/Journey.h"

namespace {

using SpaceMapJourney = KeyboardJourney;

TEST_F(SpaceMapJourney, ByAssistiveTechnologyAlone) {
    showWindow();
    ASSERT_TRUE(driver.press("Mapa de espacio"));
    expectShown({"Elige una carpeta para empezar"});
    ASSERT_TRUE(driver.press("Elegir carpeta…"));
    expectShown({"Análisis completado · 0 elementos no accesibles", tree.path("files"), "40", "6,6 MB", "246 KB"});

    // Search and category narrow list and map, not the three numbers.
    driver.key("Ctrl+F");
    driver.type("F10");
    EXPECT_TRUE(waitUntil([&] { return driver.names(list) == Texts{"f10.mov, 246 KB"}; }));
    EXPECT_TRUE(driver.shows("40"));
    driver.key("Esc");
    ASSERT_TRUE(driver.press("Comprimidos"));
    EXPECT_EQ(driver.names(list).front(), "f11.zip, 242 KB");
    ASSERT_TRUE(driver.press("Todo el espacio"));

    // A bubble selects the row.
    ASSERT_TRUE(driver.press("f13.zip"));
    EXPECT_TRUE(driver.state("f13.zip", list).selected);
    ASSERT_TRUE(driver.press("Mostrar"));
    EXPECT_EQ(fileManager.revealed, std::vector{tree.url("files/f13.zip")});

    // While the question is open nothing else acts.
    ASSERT_TRUE(driver.press("A la papelera"));
    ASSERT_TRUE(driver.waitFor("¿Mover “f13.zip” a la papelera?", dialog));
    driver.press("Vídeos");
    driver.press("f10.mov", list);
    driver.press("Analizar");
    driver.key("Ctrl+1 Ctrl+O");
    EXPECT_EQ(app.store().category(), FileCategory::all);
    EXPECT_FALSE(app.store().isScanning());
    EXPECT_EQ(app.store().mode(), ScanStore::Mode::space);
    EXPECT_EQ(chooser.asked, 1);
    ASSERT_TRUE(driver.press("Cancelar"));
    EXPECT_TRUE(driver.waitForNoDialog());

    ASSERT_TRUE(driver.press("A la papelera"));
    ASSERT_TRUE(driver.press("Mover a la papelera"));
    expectShown({"Selecciona un archivo", "39", "6,4 MB"});
    EXPECT_TRUE(waitUntil([&] { return !driver.shows("f13.zip", list); }));
}

}  // namespace
