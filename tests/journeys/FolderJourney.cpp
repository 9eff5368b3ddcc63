#include "support/Journey.h"

#include <gtest/gtest.h>
#include <QtCore/QLocale>
#include <QtTest/QTest>

#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>

namespace {

namespace fs = std::filesystem;
constexpr auto list = QAccessible::ListItem;
constexpr auto dialog = QAccessible::Dialog;

class FolderJourney : public Journey<FakeTrash> {
protected:
    void SetUp() override {
        tree.text("home/Fotos/2024/a.txt", "a");
        tree.text("home/Fotos/2025/b.txt", "b");
        tree.text("home/Música/c.txt", "c");
        tree.text("home/d.txt", "d");
        tree.text("home/.oculta/e.txt", "e");
        chooser.next = &browser;
        userFolders.folders.home = tree.url("home");
        userFolders.folders.systemRoot = FileURL("/");
        userFolders.folders.music = tree.url("home/Música");
        before = everything();
        showWindow();
    }
    void TearDown() override { EXPECT_EQ(everything(), before) << "the dialog only looks"; }

    /// Every item, with what it holds and when it was changed.
    [[nodiscard]] std::set<std::string> everything() const {
        std::set<std::string> all;
        for (const auto& entry : fs::recursive_directory_iterator(tree.path())) {
            std::stringstream text;
            text << entry.path() << ' ' << entry.last_write_time().time_since_epoch().count() << ' ';
            if (entry.is_regular_file()) {
                text << std::ifstream(entry.path()).rdbuf();
            }
            all.insert(text.str());
        }
        return all;
    }

    void openDialog() {
        driver.key(Qt::Key_O, Qt::ControlModifier);
        ASSERT_TRUE(driver.waitFor(QStringLiteral("Elegir carpeta"), dialog));
        ASSERT_TRUE(driver.waitFor(QStringLiteral("Fotos"), list));
    }
    [[nodiscard]] bool isGone() const {
        return Driver::waitUntil([this] { return driver.names(dialog).empty(); });
    }
    void doubleClick(const char* row) {
        ASSERT_TRUE(driver.waitFor(QString::fromUtf8(row), list));
        const QPoint middle = app.window().mapFromGlobal(driver.find(QString::fromUtf8(row), list)->rect().center());
        QTest::mouseClick(&app.window(), Qt::LeftButton, Qt::NoModifier, middle);
        QTest::mouseDClick(&app.window(), Qt::LeftButton, Qt::NoModifier, middle);
    }

    std::set<std::string> before;
};

TEST_F(FolderJourney, ByKeyboardAlone) {
    openDialog();
    EXPECT_EQ(driver.focused(), "Carpetas");
    EXPECT_EQ(driver.names(list), (std::vector<std::string>{"Fotos", "Música", "Inicio", "Música", "Equipo"}));

    // Round all that the Tab key stops at; nothing is to go back to yet.
    std::vector<std::string> stops;
    do {
        driver.key(Qt::Key_Tab);
        stops.push_back(driver.focused());
    } while (stops.back() != "Carpetas" && stops.size() < 20);
    EXPECT_EQ(stops, (std::vector<std::string>{"Cancelar", "Elegir", "Carpeta superior", "Ruta de la carpeta", "Inicio",
                                               "Carpetas"}));

    // Nothing behind it acts.
    driver.key(Qt::Key_3, Qt::ControlModifier);
    driver.key(Qt::Key_O, Qt::ControlModifier);
    EXPECT_EQ(app.store().mode(), ScanStore::Mode::home);
    EXPECT_EQ(chooser.asked, 1);

    driver.type(QStringLiteral("fo"));
    EXPECT_TRUE(driver.isSelected(QStringLiteral("Fotos"), list));
    driver.key(Qt::Key_Return);
    ASSERT_TRUE(driver.waitFor(QStringLiteral("2024"), list));
    driver.key(Qt::Key_Backspace);
    ASSERT_TRUE(driver.waitFor(QStringLiteral("Fotos"), list));
    EXPECT_TRUE(driver.isSelected(QStringLiteral("Fotos"), list));
    driver.key(Qt::Key_Left, Qt::AltModifier);
    ASSERT_TRUE(driver.waitFor(QStringLiteral("2025"), list));
    driver.key(Qt::Key_Up, Qt::AltModifier);
    ASSERT_TRUE(driver.waitFor(QStringLiteral("Fotos"), list));

    driver.key(Qt::Key_L, Qt::ControlModifier);
    EXPECT_EQ(driver.focused(), "Ruta de la carpeta");
    driver.type(QStringLiteral("~/no"));
    driver.key(Qt::Key_Return);
    EXPECT_TRUE(driver.waitFor(QStringLiteral("No existe ninguna carpeta con esa ruta."), QAccessible::AlertMessage));
    driver.key(Qt::Key_A, Qt::ControlModifier);
    driver.type(QStringLiteral("~/Fotos"));
    driver.key(Qt::Key_Return);
    ASSERT_TRUE(driver.waitFor(QStringLiteral("2025"), list));
    EXPECT_EQ(driver.focused(), "Carpetas");

    driver.key(Qt::Key_End);
    EXPECT_TRUE(driver.isSelected(QStringLiteral("2025"), list));
    driver.key(Qt::Key_Tab);
    driver.key(Qt::Key_Tab);
    EXPECT_EQ(driver.focused(), "Elegir");
    driver.key(Qt::Key_Return);
    ASSERT_TRUE(isGone());
    EXPECT_EQ(app.store().rootURL(), tree.url("home/Fotos/2025"));
    driver.key(Qt::Key_2, Qt::ControlModifier);
    EXPECT_EQ(app.store().mode(), ScanStore::Mode::space) << "the window has the keyboard again";
    EXPECT_TRUE(driver.waitFor(QStringLiteral("b.txt"), list));

    // It opens where one was, and Esc leaves that as it is.
    driver.key(Qt::Key_O, Qt::ControlModifier);
    ASSERT_TRUE(driver.waitFor(QStringLiteral("Elegir carpeta"), dialog));
    EXPECT_EQ(browser.location(), tree.url("home/Fotos/2025"));
    driver.key(Qt::Key_Escape);
    ASSERT_TRUE(isGone());
    EXPECT_EQ(app.store().rootURL(), tree.url("home/Fotos/2025"));
}

TEST_F(FolderJourney, ByPointerAlone) {
    colorScheme.prefer(ColorScheme::Preference::dark);
    openDialog();
    ASSERT_TRUE(driver.click(QStringLiteral("Equipo"), list));
    EXPECT_TRUE(Driver::waitUntil([this] { return browser.location() == FileURL("/"); }));
    ASSERT_TRUE(driver.click(QStringLiteral("Atrás"), QAccessible::Button));
    doubleClick("Fotos");
    ASSERT_TRUE(driver.waitFor(QStringLiteral("2024"), list));
    EXPECT_EQ(browser.location(), tree.url("home/Fotos"));
    ASSERT_TRUE(driver.click(QStringLiteral("Carpeta superior"), QAccessible::Button));
    doubleClick("Fotos");
    ASSERT_TRUE(driver.click(QStringLiteral("2024"), list));
    EXPECT_TRUE(driver.waitFor(QStringLiteral("Se elegirá “2024”")));
    ASSERT_TRUE(driver.click(QStringLiteral("Elegir"), QAccessible::Button));
    ASSERT_TRUE(isGone());
    EXPECT_EQ(app.store().rootURL(), tree.url("home/Fotos/2024"));

    driver.key(Qt::Key_O, Qt::ControlModifier);
    ASSERT_TRUE(driver.waitFor(QStringLiteral("Elegir carpeta"), dialog));
    ASSERT_TRUE(driver.click(QStringLiteral("Cancelar"), QAccessible::Button));
    ASSERT_TRUE(isGone());
    EXPECT_EQ(app.store().rootURL(), tree.url("home/Fotos/2024"));
}

TEST_F(FolderJourney, ClosingTheWindowCancels) {
    openDialog();
    app.window().close();
    EXPECT_FALSE(browser.isOpen());
    EXPECT_EQ(app.store().rootURL(), std::nullopt);
}

TEST(Language, IsSpanishWhateverTheLocale) {
    const QLocale spanish;
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    {
        FakeTrash trash;
        FakeFileManager fileManager;
        FakeFolderChooser chooser;
        FakeColorScheme colorScheme;
        FakeVolumes volumes;
        FakeUserFolders userFolders;
        FolderBrowser browser(userFolders, [] { return std::vector<FileURL>(); });
        const DuskfernApp app({trash, fileManager, chooser, browser, colorScheme, volumes, userFolders,
                               std::make_shared<FakeApplications>()});
        EXPECT_EQ(QCoreApplication::translate("QShortcut", "Space").toStdString(), "Espacio");
    }
    QLocale::setDefault(spanish);
}

}  // namespace
