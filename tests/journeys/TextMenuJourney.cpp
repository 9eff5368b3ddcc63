#include "support/KeyboardJourney.h"

#include <QtGui/QClipboard>
#include <QtQuick/QQuickItem>

namespace {

class TextMenuJourney : public KeyboardJourney {
protected:
    /// Goes down in the open menu to a command and chooses it.
    void choose(const char* command) {
        ASSERT_TRUE(driver.waitFor(command, QAccessible::MenuItem)) << command << " from " << driver.focused();
        for (int step = 0; step < 9 && driver.focused() != command; ++step) {
            driver.key("Down");
        }
        EXPECT_EQ(driver.focused(), command);
        press("Return");
        expectClosed();
    }
    void expectClosed() {
        EXPECT_TRUE(waitUntil([this] { return driver.names(QAccessible::MenuItem) == menuBar; }));
        EXPECT_EQ(driver.focused(), "Buscar archivos");
    }

    const std::vector<std::string> menuBar{"Archivo"};
};

TEST_F(TextMenuJourney, EditsTheSearchByKeyboardAndPointer) {
    showMap();
    press("Ctrl+F");
    driver.type("zip");
    press("Shift+F10");
    choose("Seleccionar todo");
    const QQuickItem* const field = app.window().activeFocusItem();
    EXPECT_EQ(field->property("selectedText"), QStringLiteral("zip"));
    press("Menu");
    choose("Cortar");
    EXPECT_EQ(app.store().search(), QString());
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("zip"));

    const QPoint middle = field->mapToScene(QPointF(field->width() / 2, field->height() / 2)).toPoint();
    QTest::mouseClick(&app.window(), Qt::RightButton, {}, middle);
    choose("Pegar");
    EXPECT_EQ(app.store().search(), QStringLiteral("zip"));
    EXPECT_TRUE(driver.waitFor("f11.zip", list));
    press("Menu");
    choose("Deshacer");
    EXPECT_EQ(app.store().search(), QString());
    press("Menu");
    choose("Rehacer");
    EXPECT_EQ(app.store().search(), QStringLiteral("zip"));

    press("Menu");
    ASSERT_TRUE(driver.waitFor("Copiar", QAccessible::MenuItem));
    EXPECT_FALSE(driver.isEnabled("Copiar", QAccessible::MenuItem)) << "nothing is selected";
    press("Esc");
    expectClosed();
    EXPECT_EQ(app.store().search(), QStringLiteral("zip")) << "only the menu is closed";
}

}  // namespace
