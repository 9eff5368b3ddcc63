#include "Trash/FreedesktopTrash.h"
#include "support/Journey.h"

#include <gtest/gtest.h>
#include <unistd.h>
#include <QtCore/QProcess>
#include <QtTest/QTest>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace {

constexpr auto list = QAccessible::ListItem;
constexpr auto dialog = QAccessible::Dialog;
constexpr auto field = QAccessible::EditableText;

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
        userFolders.folders.home = tree.url("no home");
        userFolders.folders.systemRoot = tree.url("no system");
        showWindow();
    }

    void analyse() {
        driver.key(Qt::Key_2, Qt::ControlModifier);
        driver.key(Qt::Key_O, Qt::ControlModifier);
        ASSERT_TRUE(driver.waitFor(QStringLiteral("Análisis completado · 0 elementos no accesibles")));
        ASSERT_TRUE(driver.waitFor(QStringLiteral("Boda.mov"), list));
    }

    [[nodiscard]] bool exists(const char* relative) const { return access(tree.path(relative).c_str(), F_OK) == 0; }

    /// The Trash lies in the test's own home.
    static std::string trashPath(const std::string& below) {
        return qgetenv("XDG_DATA_HOME").toStdString() + "/Trash/" + below;
    }
};

TEST_F(SpaceMapJourney, FromTheFirstLookToTheTrashAndBack) {
    EXPECT_TRUE(driver.isSelected(QStringLiteral("Inicio"), QAccessible::Button));
    ASSERT_TRUE(driver.press(QStringLiteral("Mapa de espacio")));
    EXPECT_TRUE(driver.waitFor(QStringLiteral("Descubre qué ocupa tu Mac")));
    EXPECT_TRUE(driver.shows(QStringLiteral("Elige una carpeta para empezar")));
    EXPECT_FALSE(driver.isEnabled(QStringLiteral("Analizar")));

    ASSERT_TRUE(driver.press(QStringLiteral("Elegir carpeta…")));
    ASSERT_TRUE(driver.waitFor(QStringLiteral("Análisis completado · 0 elementos no accesibles")));
    EXPECT_EQ(chooser.lastPrompt, QStringLiteral("Elegir"));
    EXPECT_TRUE(driver.isEnabled(QStringLiteral("Analizar")));
    EXPECT_TRUE(driver.shows(QString::fromStdString(tree.path())));
    for (const char* text : {"620", "369 KB", "164 KB"}) {
        EXPECT_TRUE(driver.waitFor(QString::fromUtf8(text))) << text;
    }
    EXPECT_EQ(driver.names(list).front(), "Boda.mov, 164 KB");

    // Search and category narrow list and map, not the three numbers.
    driver.key(Qt::Key_F, Qt::ControlModifier);
    driver.type(QStringLiteral("BODA"));
    EXPECT_TRUE(Driver::waitUntil([&] { return driver.names(list).size() == 1; }));
    EXPECT_TRUE(driver.shows(QStringLiteral("620")));
    driver.key(Qt::Key_Escape);
    EXPECT_EQ(app.store().search(), QString());
    ASSERT_TRUE(driver.press(QStringLiteral("Vídeos")));
    EXPECT_EQ(driver.names(list), (std::vector<std::string>{"Boda.mov, 164 KB", "Cumpleaños.mp4, 82 KB"}));
    ASSERT_TRUE(driver.press(QStringLiteral("Todo el espacio")));

    // A bubble selects the row.
    ASSERT_TRUE(driver.press(QStringLiteral("copia.zip")));
    EXPECT_EQ(app.store().selectedName(), QStringLiteral("copia.zip"));
    EXPECT_TRUE(driver.isSelected(QStringLiteral("copia.zip"), list));
    ASSERT_TRUE(driver.press(QStringLiteral("Mostrar")));
    EXPECT_EQ(fileManager.revealed, std::vector{tree.url("copia.zip")});

    // While the question is open nothing else acts.
    ASSERT_TRUE(driver.press(QStringLiteral("A la papelera")));
    ASSERT_TRUE(driver.waitFor(QStringLiteral("¿Mover “copia.zip” a la papelera?"), dialog));
    EXPECT_TRUE(driver.shows(QStringLiteral("Duskfern nunca borra archivos sin esta confirmación.")));
    driver.press(QStringLiteral("Vídeos"));
    driver.press(QStringLiteral("Boda.mov"), list);
    driver.press(QStringLiteral("Analizar"));
    driver.key(Qt::Key_1, Qt::ControlModifier);
    driver.key(Qt::Key_O, Qt::ControlModifier);
    EXPECT_EQ(app.store().category(), FileCategory::all);
    EXPECT_EQ(app.store().selectedName(), QStringLiteral("copia.zip"));
    EXPECT_FALSE(app.store().isScanning());
    EXPECT_EQ(app.store().mode(), ScanStore::Mode::space);
    EXPECT_EQ(chooser.asked, 1);
    ASSERT_TRUE(driver.press(QStringLiteral("Cancelar")));
    EXPECT_TRUE(Driver::waitUntil([&] { return driver.names(dialog).empty(); }));
    EXPECT_TRUE(exists("copia.zip"));
    EXPECT_TRUE(driver.isSelected(QStringLiteral("copia.zip"), list));

    ASSERT_TRUE(driver.press(QStringLiteral("A la papelera")));
    ASSERT_TRUE(driver.press(QStringLiteral("Mover a la papelera")));
    EXPECT_TRUE(driver.waitFor(QStringLiteral("Selecciona un archivo")));
    EXPECT_TRUE(driver.waitFor(QStringLiteral("619")));
    EXPECT_TRUE(driver.shows(QStringLiteral("246 KB")));
    EXPECT_TRUE(Driver::waitUntil([&] { return !driver.shows(QStringLiteral("copia.zip"), list); }));
    EXPECT_FALSE(exists("copia.zip"));
    EXPECT_TRUE(std::filesystem::exists(trashPath("files/copia.zip")));
    std::stringstream note;
    note << std::ifstream(trashPath("info/copia.zip.trashinfo")).rdbuf();
    EXPECT_NE(note.str().find("Path=" + tree.path("copia.zip")), std::string::npos) << note.str();

    // A session of its own, because the virtual file system keeps to the home it was started in.
    qunsetenv("GIO_USE_VFS");
    const QStringList restore{QStringLiteral("--"), QStringLiteral("gio"), QStringLiteral("trash"),
                              QStringLiteral("--restore"), QStringLiteral("trash:///copia.zip")};
    EXPECT_EQ(QProcess::execute(QStringLiteral("dbus-run-session"), restore), 0);
    EXPECT_TRUE(exists("copia.zip"));
}

TEST_F(SpaceMapJourney, ByKeyboardAlone) {
    analyse();
    ASSERT_TRUE(driver.click(QStringLiteral("Boda.mov"), list));
    driver.key(Qt::Key_Down);
    EXPECT_EQ(app.store().selectedName(), QStringLiteral("copia.zip"));
    driver.key(Qt::Key_End);
    EXPECT_TRUE(driver.waitFor(app.store().selectedName(), list)) << "the list scrolls to the selection";
    driver.key(Qt::Key_Home);
    driver.key(Qt::Key_Return);
    EXPECT_EQ(fileManager.revealed, std::vector{tree.url("vídeos/Boda.mov")});
    driver.key(Qt::Key_Delete);
    ASSERT_TRUE(driver.waitFor(QStringLiteral("¿Mover “Boda.mov” a la papelera?"), dialog));
    driver.key(Qt::Key_Escape);
    EXPECT_TRUE(Driver::waitUntil([&] { return driver.names(dialog).empty(); }));
    EXPECT_TRUE(exists("vídeos/Boda.mov"));

    // The keyboard is back in the list. The second button of the question is one Tab away.
    driver.key(Qt::Key_Delete);
    ASSERT_TRUE(driver.waitFor(QStringLiteral("¿Mover “Boda.mov” a la papelera?"), dialog));
    driver.key(Qt::Key_Tab);
    driver.key(Qt::Key_Return);
    EXPECT_TRUE(Driver::waitUntil([&] { return driver.names(dialog).empty(); }));
    EXPECT_TRUE(exists("vídeos/Boda.mov"));
    driver.key(Qt::Key_Delete);
    ASSERT_TRUE(driver.waitFor(QStringLiteral("¿Mover “Boda.mov” a la papelera?"), dialog));
    driver.key(Qt::Key_Return);
    EXPECT_TRUE(Driver::waitUntil([&] { return app.store().fileCount() == 619; }));
    EXPECT_FALSE(exists("vídeos/Boda.mov"));
}

TEST_F(SpaceMapJourney, AFailureIsToldEachTime) {
    analyse();
    ASSERT_TRUE(driver.press(QStringLiteral("copia.zip"), list));
    std::filesystem::remove(tree.path("copia.zip"));
    for (int round = 0; round < 2; ++round) {
        ASSERT_TRUE(driver.press(QStringLiteral("A la papelera")));
        ASSERT_TRUE(driver.press(QStringLiteral("Mover a la papelera")));
        ASSERT_TRUE(driver.waitFor(QStringLiteral("No se pudo completar la acción"), dialog));
        EXPECT_TRUE(driver.shows(trashErrorText(TrashError::gone, tree.url("copia.zip"))));
        ASSERT_TRUE(driver.press(QStringLiteral("Aceptar")));
        EXPECT_TRUE(Driver::waitUntil([&] { return driver.names(dialog).empty(); }));
    }
    EXPECT_TRUE(driver.isSelected(QStringLiteral("copia.zip"), list));
    EXPECT_TRUE(driver.shows(QStringLiteral("620")));
}

TEST_F(SpaceMapJourney, StrangeSearchesAndSizesDoNoHarm) {
    analyse();
    EXPECT_EQ(app.window().minimumSize(), QSize(980, 650));
    for (const QString& text :
         {QStringLiteral("🌿"), QString(10'000, QLatin1Char('x')), QStringLiteral("\n\u202E%1<b>")}) {
        app.store().setSearch(text);
        EXPECT_TRUE(driver.waitFor(QStringLiteral("No hay archivos que mostrar")));
    }
    app.store().setSearch({});
    for (const QSize size : {QSize(980, 650), QSize(1440, 900), QSize(2400, 1300)}) {
        app.window().resize(size);
        EXPECT_TRUE(Driver::waitUntil([&] {
            const QRect search = driver.find(QStringLiteral("Buscar archivos"), field)->rect();
            return search.width() == 230 && search.right() <= app.window().geometry().right() &&
                   app.window().size() == size;
        })) << size.width();
    }
    colorScheme.prefer(ColorScheme::Preference::dark);
    EXPECT_LT(app.window().color().lightness(), 100);
}

}  // namespace
