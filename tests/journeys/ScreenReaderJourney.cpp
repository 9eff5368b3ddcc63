#include "support/RunningProgram.h"
#include "support/ScreenReaderBus.h"
#include "support/TemporaryFolder.h"

#include <filesystem>

namespace {

/// The program itself, used by real keys, and what a screen reader hears of it.
class ScreenReaderJourney : public testing::Test {
protected:
    void SetUp() override {
        for (const auto& [file, blocks] : {std::pair("fotos/b.mov", 30),
                                           {"fotos/a.mov", 20},
                                           {"fotos/a.zip", 10},
                                           {".cache/navegador/a", 5},
                                           {".cache/editor/a", 3}}) {
            home.file(file, blocks * 4096);
        }
        ASSERT_TRUE(program.start(home.path()));
    }

    void TearDown() override {
        EXPECT_TRUE(program.xdotool("key ctrl+q"));
        EXPECT_TRUE(program.ends());
    }

    /// Presses a key, or has something else done, and expects that this is heard next, whatever else is.
    void press(const std::string& key, const std::string& heard) { act("key " + key, heard); }
    void act(const std::string& keys, const std::string& heard) {
        ASSERT_TRUE(program.xdotool(keys));
        hear(heard, keys);
    }
    void hear(const std::string& heard, const std::string& after) {
        EXPECT_TRUE(waitUntil([&] { return bus.hears(QString::fromStdString(heard)); }))
            << after << " should tell: " << heard << "\nheard instead: " << qPrintable(bus.unheard());
    }

    TemporaryFolder home;
    ScreenReaderBus bus;
    RunningProgram program;
};

TEST_F(ScreenReaderJourney, HearsAllFromTheStartToTheCleaning) {
    hear("Actualizar, push button", "the start");
    press("Tab", "Discos, list");
    press("Tab", "Música, list item, Cero KB, 1 de 7");

    press("ctrl+2", "Elegir carpeta…, push button");
    press("Return", "Carpetas, list");
    press("Down", "fotos, list item, 1 de 1, selected");
    press("Return", "Carpetas, list");
    // That it has begun is told too, but this scan ends before anybody could ask what was told.
    press("Return", "! Análisis completado: 3 archivos, 246 KB. 0 elementos no accesibles.");
    press("ctrl+f", "Buscar archivos, text");
    act("type mov", "! 2 archivos");
    press("Tab", "Borrar la búsqueda, push button");
    press("Tab", "Archivos más grandes, list");
    press("Down", "b.mov, 123 KB, list item, fotos, 1 de 2, selected");
    act("type a", "a.mov, 82 KB, list item, fotos, 2 de 2, selected");
    press("Escape", "! 3 archivos");
    press("Tab", "Mostrar, push button");
    press("Delete", "Mover a la papelera, push button");
    press("Return", "! Movido a la papelera. 2 archivos");
    EXPECT_FALSE(std::filesystem::exists(home.path("fotos/a.mov")));

    EXPECT_TRUE(program.startAgain("--screen=junk"));
    hear("Elementos encontrados, list", "the second start");
    hear("! 2 elementos encontrados, 2 de bajo riesgo", "the second start");
    const std::string editor = "editor, 12 KB, list item, Caché · editor, " + home.path(".cache");
    press("End", editor + ", 2 de 2, checked, selected");
    press("space", "not checked " + editor + ", 2 de 2, selected");
    press("shift+Tab", "Limpiar seleccionados, push button");
    press("Return", "Limpiar, push button");
    press("Return", "Aceptar, push button");
    press("Return", editor + ", 1 de 1");
    EXPECT_FALSE(std::filesystem::exists(home.path(".cache/navegador")));
    EXPECT_TRUE(std::filesystem::exists(home.path(".cache/editor")));
}

}  // namespace
