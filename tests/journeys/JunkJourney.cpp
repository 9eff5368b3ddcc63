#include "Trash/FreedesktopTrash.h"
#include "support/Journey.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <set>

namespace {

namespace fs = std::filesystem;
using Texts = std::vector<std::string>;

constexpr auto box = QAccessible::CheckBox;

/// A Trash that takes everything but what the test says.
struct PickyTrash final : Trash {
    [[nodiscard]] std::optional<TrashError> move(const FileURL& url, const FileIdentity& item, const Progress& progress,
                                                 const std::stop_token& stop) override {
        return refused.contains(url) ? TrashError::noPermission : real.move(url, item, progress, stop);
    }
    [[nodiscard]] std::optional<TrashError> refusal(const FileURL& url) override { return real.refusal(url); }

    FreedesktopTrash real;
    std::set<FileURL> refused;
};

class JunkJourney : public Journey<PickyTrash> {
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

    [[nodiscard]] bool isTicked(const char* name) const { return driver.find(name, box)->state().checked; }

    /// Has what is asked about cleaned, and reads the message and the rows that are left.
    void clean(const char* message, const Texts& rows, const char* reasons = "") {
        ASSERT_TRUE(driver.press("Limpiar"));
        ASSERT_TRUE(driver.waitFor(message, dialog));
        EXPECT_EQ(driver.names(dialog, QAccessible::Description), Texts{reasons});
        ASSERT_TRUE(driver.press("Aceptar"));
        ASSERT_TRUE(driver.waitForNoDialog());
        EXPECT_TRUE(waitUntil([&] { return driver.names(list) == rows; }));
    }

    /// Everything in the home, by its path.
    [[nodiscard]] std::set<std::string> home() const {
        std::set<std::string> paths;
        for (const fs::directory_entry& entry : fs::recursive_directory_iterator(tree.path("home"))) {
            paths.insert(fs::relative(entry.path(), tree.path("home")).string());
        }
        return paths;
    }
};

TEST_F(JunkJourney, FindsTicksAndCleansWhatIsSafe) {
    const std::set<std::string> before = home();
    open();
    EXPECT_EQ(driver.names(list), (Texts{"navegador, 1 MB", "org.ejemplo.Pintura, 410 KB", "com.example.Editor, 205 KB",
                                         "Xorg.0.log, 102 KB"}));
    EXPECT_EQ(driver.names(list, QAccessible::Description),
              (Texts{"Caché · navegador, " + tree.path("home/.cache") + ", 1 de 4",
                     "Posible resto · Aplicación no encontrada: org.ejemplo.Pintura, " + tree.path("home/.config") +
                         ", 2 de 4",
                     "Caché · Editor, " + tree.path("home/Library/Caches") + ", 3 de 4",
                     "Registro · log, " + tree.path("home/.local/share/xorg") + ", 4 de 4"}));
    for (const char* const text :
         {"Cachés, registros, temporales y posibles restos de apps", "ENCONTRADOS", "4", "SELECCIONADO", "1,3 MB",
          "BAJO RIESGO", "3", "Los “posibles restos” no se limpian automáticamente."}) {
        EXPECT_TRUE(driver.shows(text)) << text;
    }
    EXPECT_TRUE(isTicked("navegador"));
    EXPECT_FALSE(isTicked("org.ejemplo.Pintura"));
    ASSERT_TRUE(driver.press("org.ejemplo.Pintura", box));
    EXPECT_TRUE(isTicked("org.ejemplo.Pintura"));
    EXPECT_TRUE(driver.waitFor("1,7 MB"));
    ASSERT_TRUE(driver.press("Mostrar en Finder"));
    EXPECT_EQ(fileManager.revealed, std::vector{tree.url("home/.cache/navegador")});

    // The question is about what is safe only, and while it is open nothing else acts.
    ASSERT_TRUE(driver.press("Limpiar todo lo seguro"));
    ASSERT_TRUE(driver.waitFor("¿Mover 3 elementos a la Papelera?", dialog));
    EXPECT_TRUE(
        driver.shows("Liberarás aproximadamente 1,3 MB. Podrás "
                     "recuperarlos desde la Papelera."));
    driver.press("com.example.Editor", box);
    driver.press("Analizar basura");
    go(Qt::Key_2);
    EXPECT_TRUE(isTicked("com.example.Editor"));
    EXPECT_FALSE(app.screens().junk()->isScanning());
    ASSERT_TRUE(driver.press("Cancelar"));
    EXPECT_TRUE(driver.waitForNoDialog());
    EXPECT_EQ(home(), before);
    EXPECT_FALSE(isTicked("org.ejemplo.Pintura"));

    ASSERT_TRUE(driver.press("Limpiar todo lo seguro"));
    clean("Limpieza completada.", {"org.ejemplo.Pintura, 410 KB"});
    EXPECT_FALSE(driver.isEnabled("Limpiar seleccionados"));
    EXPECT_TRUE(driver.isEnabled("Limpiar todo lo seguro"));
    std::set<std::string> rest = before;
    for (const char* const gone : {".cache/navegador", ".cache/navegador/a", ".local/share/xorg/Xorg.0.log",
                                   "Library/Caches/com.example.Editor", "Library/Caches/com.example.Editor/a"}) {
        EXPECT_EQ(rest.erase(gone), 1U) << gone;
    }
    EXPECT_EQ(home(), rest);
    for (const std::string name : {"navegador", "Xorg.0.log", "com.example.Editor"}) {
        EXPECT_TRUE(fs::exists(inTrash("files/" + name)) && fs::exists(inTrash("info/" + name + ".trashinfo"))) << name;
    }
    EXPECT_TRUE(fs::exists(inTrash("files/navegador/a")));
}

TEST_F(JunkJourney, TellsWhatCouldNotBeMoved) {
    trash.refused = {tree.url("home/.cache/navegador")};
    open();
    ASSERT_TRUE(driver.press("Limpiar seleccionados"));
    fs::remove(tree.path("home/.local/share/xorg/Xorg.0.log"));
    clean("Limpieza parcial: 2 elementos no se pudieron mover.",
          {"navegador, 1 MB", "org.ejemplo.Pintura, 410 KB", "Xorg.0.log, 102 KB"},
          "No tienes permiso: 1\nYa no existe: 1");
    EXPECT_TRUE(isTicked("navegador"));
    EXPECT_TRUE(isTicked("Xorg.0.log"));
    EXPECT_TRUE(fs::exists(tree.path("home/.cache/navegador/a")));

    // Each visit begins anew.
    go(Qt::Key_2);
    go(Qt::Key_3);
    EXPECT_TRUE(waitUntil([&] { return driver.names(list).size() == 2; }));
}

TEST_F(JunkJourney, ByKeyboardAlone) {
    open();
    ASSERT_TRUE(driver.click("org.ejemplo.Pintura", list));
    driver.key(Qt::Key_Space);
    EXPECT_TRUE(isTicked("org.ejemplo.Pintura"));
    driver.key(Qt::Key_Home);
    driver.key(Qt::Key_Space);
    EXPECT_FALSE(isTicked("navegador"));
    driver.key(Qt::Key_Down);
    driver.key(Qt::Key_Down);
    driver.key(Qt::Key_Return);
    EXPECT_EQ(fileManager.revealed, std::vector{tree.url("home/Library/Caches/com.example.Editor")});
    EXPECT_TRUE(driver.waitFor("717 KB"));
    // From the list to the button, through the question and the message, with keys alone.
    ASSERT_TRUE(driver.tabTo("Limpiar seleccionados"));
    driver.key(Qt::Key_Space);
    ASSERT_TRUE(driver.waitFor("¿Mover 3 elementos a la Papelera?", dialog));
    driver.key(Qt::Key_Return);
    ASSERT_TRUE(driver.waitFor("Limpieza completada.", dialog));
    driver.key(Qt::Key_Return);
    EXPECT_TRUE(waitUntil([&] { return driver.names(list) == Texts{"navegador, 1 MB"}; }));
    EXPECT_TRUE(fs::exists(inTrash("files/org.ejemplo.Pintura/a")));
}

TEST_F(JunkJourney, NothingToCleanAndQuickChangesOfScreen) {
    fs::remove_all(tree.path("home"));
    for (int visit = 0; visit < 50; ++visit) {
        go(Qt::Key_3);
        go(visit % 2 == 0 ? Qt::Key_1 : Qt::Key_2);
    }
    ASSERT_TRUE(driver.press("Limpiar basura"));
    ASSERT_TRUE(driver.waitFor("Busca basura olvidada"));
    EXPECT_TRUE(driver.shows("El análisis es local y no modifica nada."));
    EXPECT_FALSE(driver.shows("ENCONTRADOS"));
    EXPECT_TRUE(driver.isEnabled("Analizar basura"));
    tree.file("home/.cache/nuevo/a", 4096);
    ASSERT_TRUE(driver.press("Analizar basura"));
    EXPECT_TRUE(driver.waitFor("nuevo", list));
}

}  // namespace
