#include "support/Journey.h"

#include <QtQuick/QQuickItem>

#include <algorithm>

namespace {

class HoverJourney : public KeyboardJourney {
protected:
    /// Puts the pointer there. Qt Quick tells items of it with the next frame.
    void pointAt(QPoint place) {
        m_pointer = place;
        QTest::mouseMove(&app.window(), m_pointer);
        QTest::qWait(30);
    }

    /// What shows that the pointer is on it.
    [[nodiscard]] std::vector<const QQuickItem*> hovered() const {
        std::vector<const QQuickItem*> all = driver.items();
        std::erase_if(all, [](const QQuickItem* item) {
            // The map's "hovered" is the number of a bubble.
            const auto isTrue = [](const QVariant& it) { return it.typeId() == QMetaType::Bool && it.toBool(); };
            return !isTrue(item->property("containsMouse")) && !isTrue(item->property("hovered"));
        });
        return all;
    }

    /// Whether nothing else shows it: now that things have moved, after the pointer has left them, and when it is back.
    void expectNoneElsewhere(const char* after) {
        QTest::qWait(30);
        const QPoint here = m_pointer;
        const auto isUnderPointer = [this](const QQuickItem* item) {
            return item->contains(item->mapFromScene(m_pointer));
        };
        for (const QPoint next : {QPoint(8, 400), here, here}) {
            EXPECT_TRUE(waitUntil([&] { return std::ranges::all_of(hovered(), isUnderPointer); }))
                << after << ", pointer at " << m_pointer.x() << ' ' << m_pointer.y();
            pointAt(next);
        }
    }

    /// Waits for a text anywhere in the window, hints included, which screen readers are not told.
    void expectHint(const std::string& hint) {
        const auto hasText = [text = QString::fromStdString(hint)](const QQuickItem* item) {
            return item->property("text") == text;
        };
        EXPECT_TRUE(waitUntil([&] { return std::ranges::any_of(driver.items(), hasText); })) << hint;
    }

    QPoint m_pointer;
};

TEST_F(HoverJourney, RowsOfFiles) {
    showMap();
    const QQuickItem* const rows = app.window().activeFocusItem();
    const QRect area = rows->mapRectToScene(QRectF(QPointF(), rows->size())).toRect();
    const QPoint onRow = driver.middleOf("f13.zip", list);
    const int below = std::min(area.bottom() + 20, app.window().height() - 2);
    for (const int y : {area.top() - 20, below, onRow.y()}) {
        pointAt({onRow.x(), y});
        for (const char* const keys : {"PgDown", "End", "Home", "Down Down Down Down Down Down Down Down Down Down"}) {
            press(keys);
            expectNoneElsewhere(keys);
        }
    }
    EXPECT_FALSE(hovered().empty());
    for (const char* const search : {"f4", "f49", "nothing", "", "zip", ""}) {
        app.store().setSearch(QString::fromLatin1(search));
        expectNoneElsewhere(search);
    }
}

TEST_F(HoverJourney, WhatIsShortenedIsShownWhole) {
    const std::string longName(200, 'n');
    const std::string file = "El principio " + longName + " y el final.mov";
    tree.file("home/.cache/" + longName + "/drafts/a", 9 * 4096);
    tree.file("files/" + file, 100 * 4096);
    showJunk(5);
    // Rows with the same name differ in their folder.
    const std::string folder = tree.path("home/.cache");
    pointAt(driver.middleOf(driver.names(list).at(1), list));
    expectHint(folder);
    pointAt(driver.middleOf(driver.names(list).at(0), list));
    expectHint(longName + "\nCaché · " + longName + "\n" + folder);

    showMap();
    press("Home Delete");
    ASSERT_TRUE(waitUntil([this] { return !openDialog().empty(); }));
    const std::string question = openDialog();
    EXPECT_TRUE(question.starts_with("¿Mover “El principio nnn")) << question;
    EXPECT_TRUE(question.ends_with("nnn y el final.mov” a la papelera?")) << question;
    EXPECT_LE(question.size(), 100U);
    pointAt(driver.middleOf(question, QAccessible::StaticText));
    expectHint(file);
    const QAccessibleInterface* const card = driver.find(question, dialog);
    const std::string promise = "Duskfern nunca borra archivos sin esta confirmación.";
    EXPECT_EQ(card->text(QAccessible::Description).toStdString(), file + " " + promise);
    EXPECT_TRUE(card->rect().contains(driver.find(promise, QAccessible::StaticText)->rect()));
}

}  // namespace
