#include "Trash/FreedesktopTrash.h"
#include "support/Journey.h"

#include <filesystem>

namespace {

namespace fs = std::filesystem;

constexpr auto box = QAccessible::CheckBox;

class JunkJourney : public Journey<FreedesktopTrash> {
protected:
    void SetUp() override {
        const std::pair<const char*, int> files[] = {
            {".cache/navegador/a", 250},
            {".cache/ibus/a", 1},
            {".local/share/xorg/Xorg.0.log", 25},
            {".config/org.ejemplo.Pintura/a", 100},
            {".config/dconf/user", 1},
            {"Documents/tesis", 1},
            {"Library/Caches/com.example.Editor/a", 50},
        };
        for (const auto& [file, blocks] : files) {
            tree.file(std::string("home/") + file, blocks * 4096);
        }
        showWindow();
    }

    void open() {
        ASSERT_TRUE(driver.press("Limpiar basura"));
        ASSERT_TRUE(driver.waitFor("navegador", list));
    }

    [[nodiscard]] bool isTicked(const char* name) const { return driver.state(name, box).checked; }

    /// Has what is asked about cleaned, and reads the message and the rows that are left.
    void clean(const char* message, const Texts& rows, const char* reasons = "") {
        ASSERT_TRUE(driver.press("Limpiar"));
        ASSERT_TRUE(driver.waitFor(message, dialog));
        EXPECT_EQ(driver.names(dialog, QAccessible::Description), Texts{reasons});
        ASSERT_TRUE(driver.press("Aceptar"));
        ASSERT_TRUE(driver.waitForNoDialog());
        EXPECT_TRUE(waitUntil([&] { return driver.names(list) == rows; }));
    }

    /// How many items there are in the home.
    [[nodiscard]] std::ptrdiff_t countItems() const {
        return std::distance(fs::recursive_directory_iterator(tree.path("home")), {});
    }
};

TEST_F(JunkJourney, FindsTicksAndCleansWhatIsSafe) {
    const auto before = countItems();
    open();
    EXPECT_EQ(driver.names(list), (Texts{"navegador, 1 MB", "org.ejemplo.Pintura, 410 KB", "com.example.Editor, 205 KB",
                                         "Xorg.0.log, 102 KB"}));
    EXPECT_EQ(
        driver.names(list, QAccessible::Description)[1],
        "Posible resto · Aplicación no encontrada: org.ejemplo.Pintura, " + tree.path("home/.config") + ", 2 de 4");
    expectShown({"4", "1,3 MB", "3"});
    EXPECT_TRUE(isTicked("navegador"));
    EXPECT_FALSE(isTicked("org.ejemplo.Pintura"));
    ASSERT_TRUE(driver.press("org.ejemplo.Pintura", box));
    EXPECT_TRUE(driver.waitFor("1,7 MB"));

    // The question is about what is safe only.
    ASSERT_TRUE(driver.press("Limpiar todo lo seguro"));
    ASSERT_TRUE(driver.waitFor("¿Mover 3 elementos a la Papelera?", dialog));
    EXPECT_TRUE(driver.shows("Liberarás aproximadamente 1,3 MB. Podrás recuperarlos desde la Papelera."));
    ASSERT_TRUE(driver.press("Cancelar"));
    EXPECT_TRUE(driver.waitForNoDialog());
    EXPECT_EQ(countItems(), before);
    EXPECT_FALSE(isTicked("org.ejemplo.Pintura"));

    ASSERT_TRUE(driver.press("Limpiar todo lo seguro"));
    clean("Limpieza completada.", {"org.ejemplo.Pintura, 410 KB"});
    EXPECT_FALSE(driver.isEnabled("Limpiar seleccionados"));
    EXPECT_EQ(countItems(), before - 5) << "two folders with a file each and a log";
    const std::string inTrash = qgetenv("XDG_DATA_HOME").toStdString() + "/Trash/files/";
    for (const char* const moved : {"navegador/a", "Xorg.0.log", "com.example.Editor/a"}) {
        EXPECT_TRUE(fs::exists(inTrash + moved)) << moved;
    }
}

TEST_F(JunkJourney, TellsWhatCouldNotBeMoved) {
    open();
    ASSERT_TRUE(driver.press("Limpiar seleccionados"));
    fs::remove(tree.path("home/.local/share/xorg/Xorg.0.log"));
    // What was found lives on elsewhere, so that its number is not given to what comes to lie in its place.
    const std::string editor = tree.path("home/Library/Caches/com.example.Editor");
    fs::rename(editor, tree.path("before"));
    tree.text("home/Library/Caches/com.example.Editor/tesis", "mine");
    clean("Limpieza parcial: 2 elementos no se pudieron mover.",
          {"org.ejemplo.Pintura, 410 KB", "com.example.Editor, 205 KB", "Xorg.0.log, 102 KB"},
          "Ya no existe: 1\nHa cambiado desde el análisis: 1");
    EXPECT_TRUE(isTicked("Xorg.0.log"));
    EXPECT_TRUE(fs::exists(editor + "/tesis"));
}

}  // namespace
