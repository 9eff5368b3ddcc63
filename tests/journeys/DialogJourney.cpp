#include "support/KeyboardJourney.h"

namespace {

constexpr const char* failure = "No se pudo completar la acción";

class DialogJourney : public KeyboardJourney {
protected:
    /// Selects the file, and asks for its move.
    void ask(const char* file) {
        ASSERT_TRUE(driver.tabTo("Archivos más grandes"));
        press("Home");
        while (app.store().selectedName() != QLatin1String(file)) {
            press("Down");
        }
        press("Del");
        ASSERT_EQ(openDialog(), std::string("¿Mover “") + file + "” a la papelera?");
        EXPECT_EQ(driver.focused(), "Mover a la papelera");
    }
};

class CleaningJourney : public DialogJourney, public testing::WithParamInterface<int> {};

TEST_P(CleaningJourney, EveryMessageIsReadAndLeftByKeysAlone) {
    trash.refusesAll = true;
    showJunk(GetParam());
    EXPECT_EQ(driver.focused(), "Elementos encontrados");
    const std::string count = std::to_string(GetParam());
    const std::vector<const char*> several{"Esc", "Space", "Return"};
    for (const char* const leave : GetParam() == 1 ? several : std::vector{"Return"}) {
        ASSERT_TRUE(driver.tabTo("Limpiar todo lo seguro"));
        press("Return");
        ASSERT_TRUE(waitForDialog(("¿Mover " + count + " elementos a la Papelera?").c_str()));
        EXPECT_EQ(driver.focused(), "Limpiar");
        press("Return");
        ASSERT_TRUE(waitForDialog(("Limpieza parcial: " + count + " elementos no se pudieron mover.").c_str()));
        EXPECT_EQ(driver.focused(), "Aceptar");
        press(leave);
        EXPECT_EQ(openDialog(), "");
        EXPECT_EQ(driver.focused(), "Limpiar todo lo seguro") << "where the keyboard was before";
    }

    trash.refusesAll = false;
    press("Return Tab");
    EXPECT_EQ(driver.focused(), "Cancelar");
    press("Return");
    EXPECT_EQ(openDialog(), "");
    ASSERT_TRUE(driver.tabTo("Limpiar seleccionados"));
    press("Return Return");
    ASSERT_TRUE(waitForDialog("Limpieza completada."));
    EXPECT_EQ(driver.focused(), "Aceptar");
    press("Return");
    EXPECT_EQ(openDialog(), "");
    EXPECT_EQ(driver.focused(), "Elementos encontrados") << "the button has nothing to clean any more";
    press("Down Return");
    EXPECT_EQ(fileManager.revealed, std::vector{tree.url("home/.config/org.ejemplo.Pintura")});
}

INSTANTIATE_TEST_SUITE_P(Items, CleaningJourney, testing::Values(1, 300));

TEST_F(DialogJourney, TheProgressHasTheKeyboardNeedsNoAnswerAndHoldsUpNoEnd) {
    showJunk(30);
    trash.waits = true;
    ASSERT_TRUE(driver.tabTo("Limpiar seleccionados"));
    press("Return Return");
    trash.turns.release(3);
    EXPECT_TRUE(waitUntil([this] { return driver.focused() == "3 de 30 · 45%"; })) << driver.focused();
    for (const char* const key : {"Return", "Esc"}) {
        press(key);
        EXPECT_EQ(openDialog(), "Moviendo a la Papelera…");
    }
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
    EXPECT_EQ(openDialog(), "¿Mover “f12.mov” a la papelera?");
    EXPECT_EQ(driver.focused(), "Mover a la papelera");
    press("Esc");
    EXPECT_EQ(openDialog(), failure);
    EXPECT_EQ(driver.focused(), "Aceptar");
    press("Esc");
    EXPECT_EQ(driver.focused(), "Archivos más grandes");
    ask("f13.zip");
    press("Esc");
    EXPECT_EQ(app.store().fileCount(), 40);
}

TEST_F(DialogJourney, AHeldKeyEndsOneMessageOnly) {
    showMap();
    trash.refusesAll = true;
    ask("f11.zip");
    QTest::simulateEvent(&app.window(), true, Qt::Key_Return, Qt::NoModifier, QStringLiteral("\r"), false);
    ASSERT_TRUE(waitForDialog(failure));
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Escape}) {
        QTest::simulateEvent(&app.window(), true, key, Qt::NoModifier, QStringLiteral("\r"), true);
        EXPECT_EQ(openDialog(), failure);
    }
}

TEST_F(DialogJourney, QuittingWorksDuringEverything) {
    showMap();
    const auto quits = [this](const char* during) {
        EXPECT_TRUE(app.window().isVisible()) << during;
        driver.key("Ctrl+Q");
        EXPECT_FALSE(app.window().isVisible()) << during;
        app.show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&app.window()));
    };
    ask("f11.zip");
    quits("a question");
    EXPECT_EQ(openDialog(), "") << "quitting means no";
    trash.refusesAll = true;
    ask("f11.zip");
    press("Return");
    ASSERT_TRUE(waitForDialog(failure));
    quits("a message");
    press("Esc Ctrl+F");
    quits("a search");
    press("F10");
    quits("an open menu");
    chooser.waits = true;
    driver.key("Ctrl+O");
    EXPECT_TRUE(waitUntil([this] { return chooser.waiting != nullptr; }));
    quits("the choice of a folder elsewhere");
    EXPECT_EQ(chooser.waiting, nullptr);
    chooser.next = &browser;
    driver.key("Ctrl+O");
    ASSERT_TRUE(waitForDialog("Elegir carpeta"));
    quits("the choice of a folder");
    EXPECT_EQ(openDialog(), "");
    EXPECT_EQ(app.store().fileCount(), 40);
}

TEST_F(DialogJourney, AVeryLongNameLeavesTheSentenceWhole) {
    const std::string name = "El principio " + std::string(200, 'x') + " y el final.mov";
    tree.file("files/" + name, 70 * 4096);
    showMap();
    press("Home Del");
    const QString shown = QString::fromStdString(openDialog());
    EXPECT_TRUE(shown.startsWith(QStringLiteral("¿Mover “El principio xxx"))) << qPrintable(shown);
    EXPECT_TRUE(shown.endsWith(QStringLiteral("xxx y el final.mov” a la papelera?"))) << qPrintable(shown);
    EXPECT_LE(shown.size(), 90);
    const QString nextLine = QStringLiteral("Duskfern nunca borra archivos sin esta confirmación.");
    ASSERT_TRUE(driver.shows(shown, dialog) && driver.shows(nextLine));
    const QRect card = driver.find(shown, dialog)->rect();
    EXPECT_TRUE(card.contains(driver.find(nextLine, QAccessible::StaticText)->rect()));
}

}  // namespace
