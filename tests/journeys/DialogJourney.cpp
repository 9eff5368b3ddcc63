#include "support/Journey.h"

namespace {

class DialogJourney : public KeyboardJourney {
protected:
    /// Selects the file, and asks for its move.
    void ask(const char* file) {
        ASSERT_TRUE(driver.tabTo(files));
        press("Home");
        while (app.store().selectedName() != QLatin1String(file)) {
            press("Down");
        }
        press("Del");
        expectDialog(std::string("¿Mover “") + file + "” a la papelera?", "Mover a la papelera");
    }

    /// Waits for a dialog, in which this has the keyboard.
    void expectDialog(const std::string& name, const char* focused) {
        ASSERT_TRUE(waitForDialog(name)) << openDialog();
        EXPECT_EQ(driver.focused(), focused);
    }

    /// Presses a key that ends the dialog, after which this has the keyboard.
    void leave(const char* key, const char* focused) {
        press(key);
        EXPECT_EQ(openDialog(), "");
        EXPECT_EQ(driver.focused(), focused);
    }
};

TEST_F(DialogJourney, EveryMessageIsReadAndLeftByKeysAlone) {
    trash.refusesAll = true;
    showJunk(30);
    EXPECT_EQ(driver.focused(), "Elementos encontrados");
    ASSERT_TRUE(driver.tabTo("Limpiar todo lo seguro"));
    for (const char* const key : {"Esc", "Space", "Return"}) {
        press("Return");
        expectDialog("¿Mover 30 elementos a la Papelera?", "Limpiar");
        press("Return");
        expectDialog("Limpieza parcial: 30 elementos no se pudieron mover.", "Aceptar");
        leave(key, "Limpiar todo lo seguro");
    }

    trash.refusesAll = false;
    press("Return Tab");
    EXPECT_EQ(driver.focused(), "Cancelar");
    leave("Return", "Limpiar todo lo seguro");
    ASSERT_TRUE(driver.tabTo("Limpiar seleccionados"));
    press("Return Return");
    expectDialog("Limpieza completada.", "Aceptar");
    leave("Return", "Elementos encontrados");  // The button has nothing to clean any more.
}

TEST_F(DialogJourney, TheProgressHasTheKeyboardNeedsNoAnswerAndHoldsUpNoEnd) {
    showJunk(30);
    trash.waits = true;
    ASSERT_TRUE(driver.tabTo("Limpiar seleccionados"));
    press("Return Return");
    trash.turns.release(3);
    EXPECT_TRUE(waitUntil([this] { return driver.focused() == "3 de 30 · 45%"; })) << driver.focused();
    press("Return Esc");
    EXPECT_EQ(openDialog(), "Moviendo a la Papelera…");
    driver.key("Ctrl+Q");
    EXPECT_FALSE(app.window().isVisible());
    trash.turns.release(27);
    EXPECT_TRUE(waitUntil([this] { return !app.screens().junk()->isCleaning(); }));
}

TEST_F(DialogJourney, WhatFailsWhileAQuestionIsOpenIsToldAfterItsAnswer) {
    showMap();
    trash.refusesAll = true;
    trash.waits = true;
    ask("f11.zip");
    press("Return");
    ask("f12.mov");
    trash.turns.release();
    ASSERT_TRUE(waitUntil([this] { return app.store().errorMessage().has_value(); }));
    expectDialog("¿Mover “f12.mov” a la papelera?", "Mover a la papelera");
    press("Esc");
    expectDialog(failure, "Aceptar");
    leave("Esc", files);
    EXPECT_EQ(app.store().fileCount(), 40);
}

TEST_F(DialogJourney, AHeldKeyEndsOneMessageOnly) {
    showMap();
    trash.refusesAll = true;
    ask("f11.zip");
    for (const auto& [key, isHeld] :
         {std::pair(Qt::Key_Return, false), {Qt::Key_Return, true}, {Qt::Key_Escape, true}}) {
        QTest::simulateEvent(&app.window(), true, key, Qt::NoModifier, QStringLiteral("\r"), isHeld);
        ASSERT_TRUE(waitForDialog(failure));
    }
}

TEST_F(DialogJourney, QuittingWorksDuringEverythingAndMeansNo) {
    showMap();
    trash.refusesAll = true;
    const auto quits = [this](const char* during) {
        driver.key("Ctrl+Q");
        EXPECT_FALSE(app.window().isVisible()) << during;
        showWindow();
    };
    ask("f11.zip");
    quits("a question");
    EXPECT_EQ(openDialog(), "");
    for (const auto& [keys, open] : {std::pair("Del Return", failure), {"Esc Ctrl+F", ""}, {"F10", ""}}) {
        press(keys);
        ASSERT_TRUE(waitForDialog(open)) << keys;
        quits(keys);
    }
    chooser.next = &browser;
    driver.key("Ctrl+O");
    ASSERT_TRUE(waitForDialog("Elegir carpeta"));
    quits("the choice of a folder");
    EXPECT_EQ(openDialog(), "");
}

}  // namespace
