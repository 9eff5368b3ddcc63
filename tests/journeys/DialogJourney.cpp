#include "support/KeyboardJourney.h"

namespace {

constexpr const char* failure = "No se pudo completar la acción";

class DialogJourney : public KeyboardJourney {
protected:
    /// Selects the file, and asks for its move.
    void ask(const char* file) {
        ASSERT_TRUE(driver.tabTo("Archivos más grandes"));
        press(Qt::Key_Home);
        while (app.store().selectedName() != QLatin1String(file)) {
            press(Qt::Key_Down);
        }
        press(Qt::Key_Delete);
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
    const std::vector<Qt::Key> several{Qt::Key_Escape, Qt::Key_Space, Qt::Key_Return};
    for (const Qt::Key leave : GetParam() == 1 ? several : std::vector{Qt::Key_Return}) {
        ASSERT_TRUE(driver.tabTo("Limpiar todo lo seguro"));
        press(Qt::Key_Return);
        ASSERT_TRUE(waitForDialog(("¿Mover " + count + " elementos a la Papelera?").c_str()));
        EXPECT_EQ(driver.focused(), "Limpiar");
        press(Qt::Key_Return);
        ASSERT_TRUE(waitForDialog(("Limpieza parcial: " + count + " elementos no se pudieron mover.").c_str()));
        EXPECT_EQ(driver.focused(), "Aceptar");
        press(leave);
        EXPECT_EQ(openDialog(), "");
        EXPECT_EQ(driver.focused(), "Limpiar todo lo seguro") << "where the keyboard was before";
    }

    trash.refusesAll = false;
    press(Qt::Key_Return);
    press(Qt::Key_Tab);
    EXPECT_EQ(driver.focused(), "Cancelar");
    press(Qt::Key_Return);
    EXPECT_EQ(openDialog(), "");
    ASSERT_TRUE(driver.tabTo("Limpiar seleccionados"));
    press(Qt::Key_Return);
    press(Qt::Key_Return);
    ASSERT_TRUE(waitForDialog("Limpieza completada."));
    EXPECT_EQ(driver.focused(), "Aceptar");
    press(Qt::Key_Return);
    EXPECT_EQ(openDialog(), "");
    EXPECT_EQ(driver.focused(), "Elementos encontrados") << "the button has nothing to clean any more";
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    EXPECT_EQ(fileManager.revealed, std::vector{tree.url("home/.config/org.ejemplo.Pintura")});
}

INSTANTIATE_TEST_SUITE_P(Items, CleaningJourney, testing::Values(1, 300));

TEST_F(DialogJourney, TheProgressHasTheKeyboardNeedsNoAnswerAndHoldsUpNoEnd) {
    showJunk(30);
    trash.waits = true;
    ASSERT_TRUE(driver.tabTo("Limpiar seleccionados"));
    press(Qt::Key_Return);
    press(Qt::Key_Return);
    trash.turns.release(3);
    EXPECT_TRUE(waitUntil([this] { return driver.focused() == "3 de 30 · 45%"; })) << driver.focused();
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Escape}) {
        press(key);
        EXPECT_EQ(openDialog(), "Moviendo a la Papelera…");
    }
    driver.key(Qt::Key_Q, Qt::ControlModifier);
    EXPECT_FALSE(app.window().isVisible());
    trash.turns.release(27);
    EXPECT_TRUE(waitUntil([this] { return !app.screens().junk()->isCleaning(); }));
}

TEST_F(DialogJourney, OneMessageAfterTheOther) {
    showMap();
    trash.refusesAll = true;
    for (int round = 0; round < 2; ++round) {
        ask("f11.zip");
        press(Qt::Key_Return);
        ASSERT_TRUE(waitForDialog(failure));
        EXPECT_EQ(driver.focused(), "Aceptar");
        press(round == 0 ? Qt::Key_Return : Qt::Key_Escape);
        EXPECT_EQ(openDialog(), "");
        EXPECT_EQ(driver.focused(), "Archivos más grandes");
    }

    // What fails while a question is open is told after its answer.
    trash.waits = true;
    ask("f11.zip");
    press(Qt::Key_Return);
    ask("f12.mov");
    trash.turns.release();
    ASSERT_TRUE(waitUntil([this] { return app.store().errorMessage().has_value(); }));
    EXPECT_EQ(openDialog(), "¿Mover “f12.mov” a la papelera?");
    EXPECT_EQ(driver.focused(), "Mover a la papelera");
    press(Qt::Key_Escape);
    EXPECT_EQ(openDialog(), failure);
    EXPECT_EQ(driver.focused(), "Aceptar");
    press(Qt::Key_Escape);
    EXPECT_EQ(driver.focused(), "Archivos más grandes");
    ask("f13.zip");
    press(Qt::Key_Escape);
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
        driver.key(Qt::Key_Q, Qt::ControlModifier);
        EXPECT_FALSE(app.window().isVisible()) << during;
        app.show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&app.window()));
        EXPECT_TRUE(waitUntil([this] { return !driver.focused().empty(); })) << during;
    };
    ask("f11.zip");
    quits("a question");
    EXPECT_EQ(openDialog(), "") << "quitting means no";
    ask("f11.zip");
    app.window().close();
    EXPECT_FALSE(app.window().isVisible());
    app.show();
    trash.refusesAll = true;
    ask("f11.zip");
    press(Qt::Key_Return);
    ASSERT_TRUE(waitForDialog(failure));
    quits("a message");
    press(Qt::Key_Escape);
    press(Qt::Key_F, Qt::ControlModifier);
    quits("a search");
    press(Qt::Key_F10);
    quits("an open menu");
    chooser.waits = true;
    driver.key(Qt::Key_O, Qt::ControlModifier);
    EXPECT_TRUE(waitUntil([this] { return chooser.waiting != nullptr; }));
    driver.key(Qt::Key_Q, Qt::ControlModifier);
    EXPECT_FALSE(app.window().isVisible()) << "the choice of a folder elsewhere";
    std::exchange(chooser.waiting, nullptr)(std::nullopt);
    app.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&app.window()));
    chooser.next = &browser;
    driver.key(Qt::Key_O, Qt::ControlModifier);
    ASSERT_TRUE(waitForDialog("Elegir carpeta"));
    quits("the choice of a folder");
    EXPECT_EQ(openDialog(), "");
    EXPECT_EQ(app.store().fileCount(), 40);
}

TEST_F(DialogJourney, AVeryLongNameLeavesTheSentenceWhole) {
    const std::string name = "El principio " + std::string(200, 'x') + " y el final.mov";
    tree.file("files/" + name, 70 * 4096);
    showMap();
    press(Qt::Key_Home);
    press(Qt::Key_Delete);
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
