#pragma once

#include "SpaceMap/BubbleMapModel.h"

#include <QtQml/qqmlregistration.h>
#include <QtGui/QColor>
#include <QtGui/QFont>
#include <QtQuick/QQuickPaintedItem>

#include <span>
#include <vector>

/// Paints the bubbles of a model, the first one lowest, clipped to a rounded rectangle. Of a bubble's symbol and texts
/// it paints only what no bubble above it covers, and no text that would be cut by that.
class BubbleMapCanvas : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT

public:
    explicit BubbleMapCanvas(QQuickItem* parent = nullptr);

    Q_PROPERTY(BubbleMapModel* model READ model WRITE setModel NOTIFY modelChanged)
    [[nodiscard]] BubbleMapModel* model() const { return m_model; }
    void setModel(BubbleMapModel* model);
    Q_SIGNAL void modelChanged();

    /// The bubble under the pointer, or -1, and whether the button is pressed there. Painted above all others.
    Q_PROPERTY(int hovered MEMBER m_hovered NOTIFY appearanceChanged)
    Q_PROPERTY(bool pressed MEMBER m_pressed NOTIFY appearanceChanged)

    /// The bubble with the keyboard focus, or -1. Painted above all others but the one under the pointer.
    Q_PROPERTY(int focused MEMBER m_focused NOTIFY appearanceChanged)

    Q_PROPERTY(qreal cornerRadius MEMBER m_cornerRadius NOTIFY appearanceChanged)
    Q_PROPERTY(QColor background MEMBER m_background NOTIFY appearanceChanged)
    Q_PROPERTY(QColor from MEMBER m_from NOTIFY appearanceChanged)  ///< Colour at the top left of a bubble.
    Q_PROPERTY(QColor to MEMBER m_to NOTIFY appearanceChanged)      ///< Colour at the bottom right.
    Q_PROPERTY(QFont bodyFont MEMBER m_bodyFont NOTIFY appearanceChanged)
    Q_PROPERTY(QFont sizeFont MEMBER m_sizeFont NOTIFY appearanceChanged)
    Q_SIGNAL void appearanceChanged();

    void paint(QPainter* painter) override;

private:
    [[nodiscard]] std::vector<Bubble> bubblesAbove(std::span<const int> order) const;
    void paintBubble(QPainter& painter, int index, std::span<const Bubble> above) const;
    void paintContent(QPainter& painter, int index, std::span<const Bubble> above) const;

    BubbleMapModel* m_model = nullptr;
    int m_hovered = -1;
    int m_focused = -1;
    bool m_pressed = false;
    qreal m_cornerRadius = 0;
    QColor m_background;
    QColor m_from;
    QColor m_to;
    QFont m_bodyFont;
    QFont m_sizeFont;
};
