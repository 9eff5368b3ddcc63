#include "support/ScreenReaderBus.h"
#include "support/TemporaryFolder.h"
#include "support/WaitUntil.h"

#include <gtest/gtest.h>
#include <QtCore/QProcess>

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
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const char* const variable : {"XDG_DATA_HOME", "XDG_STATE_HOME", "XDG_CACHE_HOME", "XDG_CONFIG_HOME"}) {
            environment.remove(QString::fromLatin1(variable));
        }
        environment.insert(QStringLiteral("HOME"), QString::fromStdString(home.path()));
        program.setProcessEnvironment(environment);
        program.setProcessChannelMode(QProcess::ForwardedChannels);
        program.start(QStringLiteral(DUSKFERN_PROGRAM), {});
        ASSERT_TRUE(xdotool("search --sync --onlyvisible --name ^Duskfern$ windowfocus --sync"));
    }

    void TearDown() override {
        EXPECT_TRUE(xdotool("key ctrl+q"));
        EXPECT_TRUE(waitUntil([this] { return program.state() == QProcess::NotRunning; }));
        EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
    }

    /// The program may wait meanwhile for an answer of the bus, which comes from this thread.
    static bool xdotool(const char* arguments) {
        QProcess tool;
        tool.start(QStringLiteral("xdotool"), QString::fromUtf8(arguments).split(u' '));
        return waitUntil([&] { return tool.state() == QProcess::NotRunning; }) && tool.exitCode() == 0;
    }

    /// Presses a key, or types a text, and expects that this is heard next, whatever else is.
    void press(const char* keys, const std::string& heard) const { act("key", keys, heard); }
    void type(const char* text, const std::string& heard) const { act("type", text, heard); }
    void act(const char* what, const char* keys, const std::string& heard) const {
        ASSERT_TRUE(xdotool(qPrintable(QStringLiteral("%1 %2").arg(QLatin1String(what), QLatin1String(keys)))));
        hear(heard, keys);
    }
    void hear(const std::string& heard, const char* after = "the start") const {
        EXPECT_TRUE(waitUntil([&] { return bus.hears(QString::fromStdString(heard)); }))
            << after << " should tell: " << heard << "\nheard instead: " << qPrintable(bus.unheard());
    }

    TemporaryFolder home;
    ScreenReaderBus bus;
    QProcess program;
};

TEST_F(ScreenReaderJourney, HearsAllFromTheStartToTheCleaning) {
    hear("! Tamaños calculados");
    hear("Actualizar, push button");
    press("Tab", "Discos, list");
    press("Tab", "Música, list item, Cero KB, 1 de 7");
    press("Right", "Vídeos, list item, Cero KB, 2 de 7");
    press("F10", "Elegir carpeta…, menu item");
    press("Escape", "Vídeos, list item, Cero KB, 2 de 7");

    press("ctrl+2", "Elegir carpeta…, push button");
    press("Return", "Carpetas, list");
    press("Down", "fotos, list item, 1 de 1, selected");
    press("Return", "Carpetas, list");
    // That it has begun is told too, but this scan ends before anybody could ask what was told.
    press("Return", "! Análisis completado: 3 archivos, 246 KB. 0 elementos no accesibles.");
    press("ctrl+f", "Buscar archivos, text");
    type("mov", "! 2 archivos");
    press("Tab", "Borrar la búsqueda, push button");
    press("Tab", "Archivos más grandes, list");
    press("Down", "b.mov, 123 KB, list item, fotos, 1 de 2, selected");
    type("a", "a.mov, 82 KB, list item, fotos, 2 de 2, selected");
    press("Escape", "! 3 archivos");
    press("Tab", "Mostrar, push button");
    press("Delete",
          "Mover a la papelera, push button, in ¿Mover “a.mov” a la papelera? "
          "Duskfern nunca borra archivos sin esta confirmación.");
    press("Return", "! Movido a la papelera. 2 archivos");
    EXPECT_FALSE(std::filesystem::exists(home.path("fotos/a.mov")));

    press("ctrl+3", "Elementos encontrados, list");
    hear("! 2 elementos encontrados, 2 de bajo riesgo");
    const std::string editor = "editor, 12 KB, list item, Caché · editor, " + home.path(".cache");
    press("End", editor + ", 2 de 2, checked, selected");
    press("space", "not checked " + editor + ", 2 de 2, selected");
    press("shift+Tab", "Limpiar seleccionados, push button");
    press("Return", "Limpiar, push button, in ¿Mover 1 elementos a la Papelera?");
    press("Return", "Aceptar, push button, in Limpieza completada.");
    press("Return", editor + ", 1 de 1");
    EXPECT_FALSE(std::filesystem::exists(home.path(".cache/navegador")));
    EXPECT_TRUE(std::filesystem::exists(home.path(".cache/editor")));
}

}  // namespace
