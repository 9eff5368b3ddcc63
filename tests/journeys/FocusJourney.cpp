#include "support/Journey.h"

#include <QtGui/QClipboard>
#include <QtQuick/QQuickItem>
#include <QtTest/QSignalSpy>

#include <filesystem>
#include <random>

namespace {

class FocusJourney : public KeyboardJourney {
protected:
    [[nodiscard]] std::string selected() { return app.store().selectedName().toStdString(); }

    /// Whether a bubble of this file has the focus.
    [[nodiscard]] bool isOnBubble(const std::string& file) const { return driver.focused().starts_with(file + ", "); }

    void trashSelected() {
        const qint64 before = app.store().fileCount();
        press("Del Return");
        ASSERT_TRUE(waitUntil([&] { return app.store().fileCount() == before - 1; }));
        ASSERT_TRUE(waitUntil([&] { return !driver.focused().empty(); }));
    }
};

TEST_F(FocusJourney, AScreenThatIsShownHasTheKeyboardAndAHiddenOneHasNot) {
    makeJunk(1);
    showMap();
    press("Home Ctrl+3");
    ASSERT_TRUE(driver.waitFor("app0", list));
    EXPECT_EQ(driver.focused(), "Elementos encontrados");
    press("Down Return Del End Ctrl+1");
    ASSERT_TRUE(waitUntil([this] { return driver.isEnabled("Actualizar"); }));
    press("Down Del End Return Up");
    EXPECT_EQ(fileManager.revealed, std::vector{tree.url("home/.cache/app0")});
    EXPECT_EQ(openDialog(), "");
    press("Ctrl+2");
    EXPECT_EQ(selected(), "f10.mov");
    EXPECT_EQ(driver.focused(), files);
    press("Down");
    EXPECT_EQ(selected(), "f11.zip");
}

TEST_F(FocusJourney, WithoutRowsTheMainButtonIsFirst) {
    showWindow();
    press("Ctrl+2");
    EXPECT_EQ(driver.focused(), "Elegir carpeta…");
    std::filesystem::remove_all(tree.path("home"));
    press("Ctrl+3");
    ASSERT_TRUE(driver.waitFor("Busca basura olvidada"));
    EXPECT_TRUE(waitUntil([this] { return driver.focused() == "Analizar basura"; }));
    makeJunk(1);
    press("Return");
    EXPECT_TRUE(driver.waitFor("app0", list));

    // A page that is in sight as a whole needs no keys.
    app.window().resize(1440, 1000);
    press("Ctrl+1");
    EXPECT_TRUE(waitUntil([this] { return driver.focused() == "Actualizar"; }));
}

TEST_F(FocusJourney, TheKeysOfTheWindowWorkFromEverywhere) {
    makeJunk(1);
    showMap();
    for (const char* const place : {"Archivo", "Herramientas", "Explorar", "Ancho de la barra lateral",
                                    "Elegir carpeta", "Buscar archivos", files, "f10.mov"}) {
        for (const auto& [keys, arrival] :
             {std::pair("Ctrl+1 Ctrl+2", files), {"Ctrl+3 Ctrl+2", files}, {"Ctrl+F", "Buscar archivos"}}) {
            ASSERT_TRUE(driver.tabTo(place)) << place;
            press(keys);
            EXPECT_EQ(driver.focused(), arrival) << place;
        }
        for (const char* const key : {"Ctrl+O", "Ctrl+R"}) {
            ASSERT_TRUE(driver.tabTo(place)) << place;
            const QSignalSpy scans(&app.store(), &ScanStore::isScanningChanged);
            press(key);
            EXPECT_TRUE(waitUntil([&] { return scans.count() == 2; })) << key << " from " << place;
        }
    }
    EXPECT_EQ(chooser.asked, 9);
    press("Ctrl+3 Ctrl+F");
    EXPECT_EQ(driver.focused(), "Buscar archivos");
}

TEST_F(FocusJourney, TheMenuGivesTheKeyboardBack) {
    showMap();
    for (const char* const place : {"Explorar", "Buscar archivos", files}) {
        ASSERT_TRUE(driver.tabTo(place));
        press("Alt+A");
        EXPECT_EQ(driver.focused(), "Elegir carpeta…") << place;
        press("Esc");
        EXPECT_EQ(driver.focused(), place);
        press("F10 F10");
        EXPECT_EQ(driver.focused(), place) << "opened and closed";
        press("F10 Ctrl+1 Ctrl+2");
        EXPECT_EQ(driver.focused(), files) << "closed by going elsewhere";
    }

    // So does the folder dialog, opened from it.
    chooser.next = &browser;
    ASSERT_TRUE(driver.tabTo("Explorar"));
    press("F10 Return Tab Esc");
    EXPECT_EQ(driver.focused(), "Explorar");
}

TEST_F(FocusJourney, ABubbleKeepsTheFocusByItsFile) {
    showMap();
    ASSERT_TRUE(driver.tabTo("f10.mov"));
    press("Left Down Right Up Home");
    EXPECT_TRUE(isOnBubble("f10.mov")) << driver.focused();
    press("End Tab Shift+Backtab");
    EXPECT_TRUE(isOnBubble("f23.zip")) << driver.focused() << ", one Tab stop, where one was";
    for (const char* const search : {"zip", "f23", ""}) {
        app.store().setSearch(QString::fromLatin1(search));
        EXPECT_TRUE(isOnBubble("f23.zip")) << search;
    }
    press("Return");
    EXPECT_EQ(selected(), "f23.zip");

    // A larger one goes, and then the one itself.
    app.store().selectRow(0);
    trashSelected();
    EXPECT_TRUE(isOnBubble("f23.zip")) << driver.focused();
    press("Space");
    trashSelected();
    EXPECT_EQ(driver.focused(), files);

    // The focus of who types a search is not taken.
    ASSERT_TRUE(driver.tabTo("f24.mov"));
    press("Ctrl+F");
    driver.type("zip");
    EXPECT_EQ(driver.focused(), "Buscar archivos");
}

TEST_F(FocusJourney, AfterAMoveTheNextArrowGoesOnFromThere) {
    showMap();
    press("Home Down Down Down");
    trashSelected();
    EXPECT_EQ(selected(), "");
    EXPECT_EQ(driver.focused(), files);
    press("Down");
    EXPECT_EQ(selected(), "f14.mov");
    trashSelected();
    press("Up");
    EXPECT_EQ(selected(), "f12.mov");
    press("End");
    trashSelected();
    press("Down");
    EXPECT_EQ(selected(), "f48.mov") << "the last row is left";
}

TEST_F(FocusJourney, WhatIsOnItsWayIsNotAskedAboutAgain) {
    showMap();
    trash.waits = true;
    press("Home Del Return");
    expectShown({"Moviendo a la papelera… 45%", "f10.mov"});
    EXPECT_FALSE(driver.shows("A la papelera", button));
    press("Del");
    EXPECT_EQ(openDialog(), "");
    press("Down");
    EXPECT_TRUE(driver.shows("A la papelera", button));
    press("Up");
    trash.turns.release();
    expectShown({"Selecciona un archivo"});
    EXPECT_EQ(app.store().fileCount(), 39);
}

TEST_F(FocusJourney, TheSelectedRowIsInSightWhenAFilterGoes) {
    showMap();
    press("Ctrl+F");
    driver.type("zip");
    ASSERT_TRUE(driver.tabTo(files));
    press("End Esc");
    EXPECT_TRUE(waitUntil([this] { return driver.shows(selected(), list); }));
}

TEST_F(FocusJourney, TheMenuOfATextEditsIt) {
    showMap();
    press("Ctrl+F");
    driver.type("zip");
    for (const auto& [command, search] : {std::pair("Seleccionar todo", "zip"),
                                          {"Cortar", ""},
                                          {"Pegar", "zip"},
                                          {"Pegar", "zipzip"},
                                          {"Deshacer", "zip"},
                                          {"Rehacer", "zipzip"}}) {
        press("Shift+F10");
        ASSERT_TRUE(driver.waitFor(command, QAccessible::MenuItem));
        for (int step = 0; step < 9 && driver.focused() != command; ++step) {
            driver.key("Down");
        }
        press("Return");
        EXPECT_TRUE(waitUntil([this] { return driver.names(QAccessible::MenuItem) == Texts{"Archivo"}; }));
        EXPECT_EQ(driver.focused(), "Buscar archivos");
        EXPECT_EQ(app.store().search().toStdString(), search) << command;
    }
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("zip"));

    const QQuickItem* const field = app.window().activeFocusItem();
    const QPoint middle = field->mapToScene(QPointF(field->width() / 2, field->height() / 2)).toPoint();
    QTest::mouseClick(&app.window(), Qt::RightButton, {}, middle);
    ASSERT_TRUE(driver.waitFor("Copiar", QAccessible::MenuItem));
    EXPECT_FALSE(driver.isEnabled("Copiar", QAccessible::MenuItem)) << "nothing is selected";
}

/// Whatever keys are pressed in whatever order, there is always something that has the focus.
TEST_F(FocusJourney, NoKeyLeadsToNothing) {
    makeJunk(6);
    showMap();
    const char* const keys[] = {"Tab",    "Tab",    "Shift+Backtab", "Return", "Return", "Esc",  "Space",
                                "Down",   "Up",     "End",           "Del",    "F10",    "F",    "Ctrl+1",
                                "Ctrl+2", "Ctrl+3", "Ctrl+F",        "Ctrl+O", "Ctrl+R", "Alt+A"};
    std::mt19937 random(20);
    for (int step = 0; step < 1500 && !testing::Test::HasFailure(); ++step) {
        const char* const key = keys[random() % std::size(keys)];
        trash.refusesAll = random() % 2 == 0;
        press(key);
        if (step % 10 == 0) {
            QTest::qWait(5);
        }
    }
}

}  // namespace
