#include "support/KeyboardJourney.h"

#include <QtGui/QWheelEvent>
#include <QtQuick/QQuickItem>

#include <algorithm>

namespace {

class HoverJourney : public KeyboardJourney {
protected:
    /// Puts the pointer there.
    void pointAt(QPoint place) {
        m_pointer = place;
        QTest::mouseMove(&app.window(), m_pointer);
        QTest::qWait(30);
    }

    /// How many show that the pointer is on them: all, or those that it is not on.
    enum class Which { all, wrong };
    [[nodiscard]] int count(const QQuickItem* item, Which which) const {
        // The map's "hovered" is the number of a bubble.
        const auto isTrue = [item](const char* property) {
            const QVariant value = item->property(property);
            return value.metaType() == QMetaType::fromType<bool>() && value.toBool();
        };
        const bool isOn = item->isVisible() && (isTrue("containsMouse") || isTrue("hovered"));
        int sum = isOn && (which == Which::all || !item->contains(item->mapFromScene(m_pointer))) ? 1 : 0;
        for (const QQuickItem* const child : item->childItems()) {
            sum += count(child, which);
        }
        return sum;
    }

    /// Qt Quick tells items of the pointer with the next frame after they moved.
    void expectNoneElsewhere(const char* after) {
        QTest::qWait(30);
        const auto isRight = [this] { return count(app.window().contentItem(), Which::wrong) == 0; };
        EXPECT_TRUE(waitUntil(isRight)) << after << ", pointer at " << m_pointer.y();
        const QPoint back = m_pointer;
        pointAt({8, 400});
        EXPECT_TRUE(waitUntil(isRight)) << after << ", and away from " << back.y();
        pointAt(back);
        EXPECT_TRUE(waitUntil(isRight)) << after << ", and back";
    }

    /// Whether a text is anywhere in the window, hints included, which screen readers are not told.
    [[nodiscard]] static bool shows(const QQuickItem* item, const std::string& text) {
        const QList<QQuickItem*> children = item->childItems();
        return item->isVisible() &&
               (item->property("text").toString().toStdString() == text ||
                std::any_of(children.begin(), children.end(), [&](const auto* child) { return shows(child, text); }));
    }

    void pointAt(const std::string& name, QAccessible::Role role) {
        const QAccessibleInterface* const seen = driver.find(name, role);
        ASSERT_NE(seen, nullptr) << name;
        pointAt(app.window().mapFromGlobal(seen->rect().center()));
    }
    void expectHint(const std::string& hint) {
        EXPECT_TRUE(waitUntil([&] { return shows(app.window().contentItem(), hint); })) << hint;
    }

    void wheel(int steps) {
        QWheelEvent event(m_pointer, app.window().mapToGlobal(m_pointer), {}, {0, 120 * steps}, Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&app.window(), &event);
        const QQuickItem* const rows = app.window().activeFocusItem();
        EXPECT_TRUE(waitUntil([&] { return !rows->property("moving").toBool(); }));
    }

    /// Scrolls while the pointer is on a row, just above the rows and just below them.
    void useList(const char* row) {
        const QQuickItem* const rows = app.window().activeFocusItem();
        const QRect area = rows->mapRectToScene(QRectF(QPointF(), rows->size())).toRect();
        const QRect first = driver.find(row, list)->rect();
        const QPoint onRow = app.window().mapFromGlobal(first.center());
        const QPoint below(onRow.x(), std::min(area.bottom() + 20, app.window().height() - 2));
        for (const QPoint place : {onRow, QPoint(onRow.x(), area.top() - 20), below}) {
            pointAt(place);
            for (const char* const key : {"PgDown", "End", "Home"}) {
                press(key);
                expectNoneElsewhere("scrolling by key");
            }
            press("Down Down Down Down Down Down Down Down Down Down Down Down");
            expectNoneElsewhere("going down");
        }
        pointAt(onRow);
        EXPECT_GT(count(app.window().contentItem(), Which::all), 0);
        for (const int steps : {-1, -5, 3, -20, 20}) {
            wheel(steps);
            expectNoneElsewhere("scrolling by wheel");
        }
    }

private:
    QPoint m_pointer;
};

TEST_F(HoverJourney, RowsOfFiles) {
    showMap();
    useList("f13.zip");
    for (const char* const search : {"f4", "f49", "nothing", "", "zip", ""}) {
        app.store().setSearch(QString::fromLatin1(search));
        expectNoneElsewhere(search);
    }
}

TEST_F(HoverJourney, WhatIsShortenedIsShownWhole) {
    const std::string name(200, 'n');
    tree.file("home/.cache/" + name + "/drafts/a", 9 * 4096);
    tree.file("files/" + name, 100 * 4096);
    showJunk(5);
    // Rows with the same name differ in their folder.
    const std::string folder = tree.path("home/.cache");
    pointAt(driver.names(list).at(1), list);
    expectHint(folder);
    pointAt(driver.names(list).at(0), list);
    expectHint(name + "\nCaché · " + name + "\n" + folder);

    showMap();
    press("Home");
    press("Delete");
    ASSERT_TRUE(waitUntil([this] { return openDialog().ends_with("a la papelera?"); }));
    pointAt(openDialog(), QAccessible::StaticText);
    expectHint(name);
    EXPECT_EQ(driver.find(openDialog(), QAccessible::Dialog)->text(QAccessible::Description).toStdString(),
              name + " Duskfern nunca borra archivos sin esta confirmación.");
}

}  // namespace
