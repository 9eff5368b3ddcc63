#include "Trash/FreedesktopTrash.h"
#include "support/Journey.h"

#include <gtest/gtest.h>
#include <QtTest/QTest>

#include <filesystem>
#include <set>

namespace {

namespace fs = std::filesystem;

constexpr auto list = QAccessible::ListItem;
constexpr auto box = QAccessible::CheckBox;
constexpr auto dialog = QAccessible::Dialog;

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
        UserFolderPaths& paths = userFolders.folders;
        paths.home = tree.url("home");
        paths.systemRoot = tree.url("system");
        paths.cacheHome = tree.url("home/.cache");
        paths.dataHome = tree.url("home/.local/share");
        paths.configHome = tree.url("home/.config");
        tree.file("home/.cache/navegador/a", 250 * 4096);
        tree.file("home/.cache/ibus/a", 4096);
        tree.file("home/.local/share/xorg/Xorg.0.log", 25 * 4096);
        tree.file("home/.config/org.ejemplo.Pintura/a", 100 * 4096);
        tree.file("home/.config/dconf/user", 4096);
        tree.file("home/Documents/tesis", 4096);
        tree.file("home/Library/Caches/com.example.Editor/a", 50 * 4096);
        showWindow();
    }

    void open() {
        ASSERT_TRUE(driver.press(QStringLiteral("Limpiar basura")));
        ASSERT_TRUE(driver.waitFor(QStringLiteral("navegador"), list));
    }

    [[nodiscard]] bool isTicked(const char* name) const {
        return driver.find(QString::fromUtf8(name), box)->state().checked;
    }

    void confirm() {
        ASSERT_TRUE(driver.press(QStringLiteral("Limpiar")));
        ASSERT_TRUE(Driver::waitUntil([this] { return app.screens().junk()->message().has_value(); }));
    }

    /// Whether the list shows these rows; it takes a moment to take rows away.
    [[nodiscard]] bool showsRows(const std::vector<std::string>& rows) const {
        return Driver::waitUntil([&] { return driver.names(list) == rows; });
    }

    /// Everything in the home, by its path.
    [[nodiscard]] std::set<std::string> home() const {
        std::set<std::string> paths;
        for (const fs::directory_entry& entry : fs::recursive_directory_iterator(tree.path("home"))) {
            paths.insert(fs::relative(entry.path(), tree.path("home")).string());
        }
        return paths;
    }

    static bool isInTrash(const std::string& name) {
        return fs::exists(qgetenv("XDG_DATA_HOME").toStdString() + "/Trash/files/" + name) &&
               fs::exists(qgetenv("XDG_DATA_HOME").toStdString() + "/Trash/info/" + name + ".trashinfo");
    }
};

TEST_F(JunkJourney, FindsTicksAndCleansWhatIsSafe) {
    const std::set<std::string> before = home();
    open();
    EXPECT_EQ(driver.names(list), (std::vector<std::string>{"navegador, 1 MB", "org.ejemplo.Pintura, 410 KB",
                                                            "com.example.Editor, 205 KB", "Xorg.0.log, 102 KB"}));
    for (const char* const text :
         {"Cachés, registros, temporales y posibles restos de apps", "ENCONTRADOS", "4", "SELECCIONADO", "1,3 MB",
          "BAJO RIESGO", "3", "Los “posibles restos” no se limpian automáticamente."}) {
        EXPECT_TRUE(driver.shows(QString::fromUtf8(text))) << text;
    }
    EXPECT_EQ(
        driver.descriptions(list),
        (std::vector<std::string>{"Caché · navegador", "Posible resto · Aplicación no encontrada: org.ejemplo.Pintura",
                                  "Caché · Editor", "Registro · log"}));
    EXPECT_TRUE(isTicked("navegador"));
    EXPECT_FALSE(isTicked("org.ejemplo.Pintura"));

    ASSERT_TRUE(driver.press(QStringLiteral("org.ejemplo.Pintura"), box));
    EXPECT_TRUE(isTicked("org.ejemplo.Pintura"));
    EXPECT_TRUE(driver.waitFor(QStringLiteral("1,7 MB")));
    ASSERT_TRUE(driver.press(QStringLiteral("Mostrar en Finder")));
    EXPECT_EQ(fileManager.revealed, std::vector{tree.url("home/.cache/navegador")});

    // The question is about what is safe only, and while it is open nothing else acts.
    ASSERT_TRUE(driver.press(QStringLiteral("Limpiar todo lo seguro")));
    ASSERT_TRUE(driver.waitFor(QStringLiteral("¿Mover 3 elementos a la Papelera?"), dialog));
    EXPECT_TRUE(
        driver.shows(QStringLiteral("Liberarás aproximadamente 1,3 MB. Podrás recuperarlos desde la Papelera.")));
    driver.press(QStringLiteral("com.example.Editor"), box);
    driver.press(QStringLiteral("Analizar basura"));
    driver.key(Qt::Key_2, Qt::ControlModifier);
    EXPECT_TRUE(isTicked("com.example.Editor"));
    EXPECT_FALSE(app.screens().junk()->isScanning());
    ASSERT_TRUE(driver.press(QStringLiteral("Cancelar")));
    EXPECT_TRUE(Driver::waitUntil([&] { return driver.names(dialog).empty(); }));
    EXPECT_EQ(home(), before);
    EXPECT_FALSE(isTicked("org.ejemplo.Pintura"));

    ASSERT_TRUE(driver.press(QStringLiteral("Limpiar todo lo seguro")));
    confirm();
    ASSERT_TRUE(driver.waitFor(QStringLiteral("Limpieza completada."), dialog));
    ASSERT_TRUE(driver.press(QStringLiteral("Aceptar")));
    EXPECT_TRUE(Driver::waitUntil([&] { return driver.names(dialog).empty(); }));
    EXPECT_TRUE(showsRows({"org.ejemplo.Pintura, 410 KB"}));
    EXPECT_FALSE(driver.isEnabled(QStringLiteral("Limpiar seleccionados")));
    EXPECT_TRUE(driver.isEnabled(QStringLiteral("Limpiar todo lo seguro")));
    std::set<std::string> rest = before;
    for (const char* const gone : {".cache/navegador", ".cache/navegador/a", ".local/share/xorg/Xorg.0.log",
                                   "Library/Caches/com.example.Editor", "Library/Caches/com.example.Editor/a"}) {
        EXPECT_EQ(rest.erase(gone), 1U) << gone;
    }
    EXPECT_EQ(home(), rest);
    for (const char* const name : {"navegador", "Xorg.0.log", "com.example.Editor"}) {
        EXPECT_TRUE(isInTrash(name)) << name;
    }
    EXPECT_TRUE(fs::exists(qgetenv("XDG_DATA_HOME").toStdString() + "/Trash/files/navegador/a"));
}

TEST_F(JunkJourney, TellsWhatCouldNotBeMoved) {
    trash.refused = {tree.url("home/.cache/navegador")};
    open();
    ASSERT_TRUE(driver.press(QStringLiteral("Limpiar seleccionados")));
    fs::remove(tree.path("home/.local/share/xorg/Xorg.0.log"));
    confirm();
    ASSERT_TRUE(driver.waitFor(QStringLiteral("Limpieza parcial: 2 elementos no se pudieron mover."), dialog));
    ASSERT_TRUE(driver.press(QStringLiteral("Aceptar")));
    EXPECT_TRUE(Driver::waitUntil([&] { return driver.names(dialog).empty(); }));
    EXPECT_TRUE(showsRows({"navegador, 1 MB", "org.ejemplo.Pintura, 410 KB", "Xorg.0.log, 102 KB"}));
    EXPECT_TRUE(isTicked("navegador"));
    EXPECT_TRUE(isTicked("Xorg.0.log"));
    EXPECT_TRUE(fs::exists(tree.path("home/.cache/navegador/a")));

    // Each visit begins anew.
    driver.key(Qt::Key_2, Qt::ControlModifier);
    driver.key(Qt::Key_3, Qt::ControlModifier);
    EXPECT_TRUE(Driver::waitUntil([&] { return driver.names(list).size() == 2; }));
}

TEST_F(JunkJourney, ByKeyboardAlone) {
    open();
    ASSERT_TRUE(driver.click(QStringLiteral("org.ejemplo.Pintura"), list));
    driver.key(Qt::Key_Space);
    EXPECT_TRUE(isTicked("org.ejemplo.Pintura"));
    driver.key(Qt::Key_Home);
    driver.key(Qt::Key_Space);
    EXPECT_FALSE(isTicked("navegador"));
    driver.key(Qt::Key_Down);
    driver.key(Qt::Key_Down);
    driver.key(Qt::Key_Return);
    EXPECT_EQ(fileManager.revealed, std::vector{tree.url("home/Library/Caches/com.example.Editor")});
    EXPECT_TRUE(driver.waitFor(QStringLiteral("717 KB")));
}

TEST_F(JunkJourney, NothingToCleanAndQuickChangesOfScreen) {
    fs::remove_all(tree.path("home"));
    for (int visit = 0; visit < 50; ++visit) {
        driver.key(Qt::Key_3, Qt::ControlModifier);
        driver.key(visit % 2 == 0 ? Qt::Key_1 : Qt::Key_2, Qt::ControlModifier);
    }
    ASSERT_TRUE(driver.press(QStringLiteral("Limpiar basura")));
    ASSERT_TRUE(driver.waitFor(QStringLiteral("Busca basura olvidada")));
    EXPECT_TRUE(driver.shows(QStringLiteral("El análisis es local y no modifica nada.")));
    EXPECT_FALSE(driver.shows(QStringLiteral("ENCONTRADOS")));
    EXPECT_TRUE(driver.isEnabled(QStringLiteral("Analizar basura")));
    tree.file("home/.cache/nuevo/a", 4096);
    ASSERT_TRUE(driver.press(QStringLiteral("Analizar basura")));
    EXPECT_TRUE(driver.waitFor(QStringLiteral("nuevo"), list));
}

}  // namespace
