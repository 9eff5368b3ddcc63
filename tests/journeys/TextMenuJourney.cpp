#include "support/Journey.h"

#include <QtGui/QClipboard>
#include <QtQuick/QQuickItem>

namespace {

class TextMenuJourney : public KeyboardJourney {
protected:
    /// Goes down in the open menu to a command and chooses it, after which this is searched for.
    void choose(const char* command, const char* search) {
        ASSERT_TRUE(driver.waitFor(command, QAccessible::MenuItem)) << command << " from " << driver.focused();
        for (int step = 0; step < 9 && driver.focused() != command; ++step) {
            driver.key("Down");
        }
        EXPECT_EQ(driver.focused(), command);
        press("Return");
        expectClosed(search);
    }
    void expectClosed(const char* search) {
        EXPECT_TRUE(waitUntil([this] { return driver.names(QAccessible::MenuItem) == Texts{"Archivo"}; }));
        EXPECT_EQ(driver.focused(), "Buscar archivos");
        EXPECT_EQ(app.store().search().toStdString(), search);
    }
};

TEST_F(TextMenuJourney, EditsTheSearchByKeyboardAndPointer) {
    showMap();
    press("Ctrl+F");
    driver.type("zip");
    press("Shift+F10");
    choose("Seleccionar todo", "zip");
    const QQuickItem* const field = app.window().activeFocusItem();
    EXPECT_EQ(field->property("selectedText"), QStringLiteral("zip"));
    for (const auto& [command, search] :
         {std::pair("Cortar", ""), {"Pegar", "zip"}, {"Deshacer", ""}, {"Rehacer", "zip"}}) {
        press("Menu");
        choose(command, search);
    }
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("zip"));

    const QPoint middle = field->mapToScene(QPointF(field->width() / 2, field->height() / 2)).toPoint();
    QTest::mouseClick(&app.window(), Qt::RightButton, {}, middle);
    ASSERT_TRUE(driver.waitFor("Copiar", QAccessible::MenuItem));
    EXPECT_FALSE(driver.isEnabled("Copiar", QAccessible::MenuItem)) << "nothing is selected";
    press("Esc");
    expectClosed("zip");
}

}  // namespace
