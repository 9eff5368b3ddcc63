#pragma once

#include "SpaceMap/BubbleMapModel.h"

#include <QtQml/qqmlregistration.h>
#include <QtGui/QColor>
#include <QtGui/QFont>
#include <QtQuick/QQuickPaintedItem>

/// Paints the bubbles of a model, the first one lowest, clipped to a rounded rectangle.
class BubbleMapCanvas : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT

public:
    explicit BubbleMapCanvas(QQuickItem* parent = nullptr);

    Q_PROPERTY(BubbleMapModel* model READ model WRITE setModel NOTIFY modelChanged)
    [[nodiscard]] BubbleMapModel* model() const { return m_model; }
    void setModel(BubbleMapModel* model);
    Q_SIGNAL void modelChanged();

    /// The bubble under the pointer, or -1, and whether the button is pressed there.
    Q_PROPERTY(int hovered MEMBER m_hovered NOTIFY appearanceChanged)
    Q_PROPERTY(bool pressed MEMBER m_pressed NOTIFY appearanceChanged)

    Q_PROPERTY(qreal cornerRadius MEMBER m_cornerRadius NOTIFY appearanceChanged)
    Q_PROPERTY(QColor background MEMBER m_background NOTIFY appearanceChanged)
    Q_PROPERTY(QColor from MEMBER m_from NOTIFY appearanceChanged)  ///< Colour at the top left of a bubble.
    Q_PROPERTY(QColor to MEMBER m_to NOTIFY appearanceChanged)      ///< Colour at the bottom right.
    Q_PROPERTY(QFont bodyFont MEMBER m_bodyFont NOTIFY appearanceChanged)
    Q_PROPERTY(QFont sizeFont MEMBER m_sizeFont NOTIFY appearanceChanged)
    Q_SIGNAL void appearanceChanged();

    void paint(QPainter* painter) override;

private:
    void paintBubble(QPainter& painter, int index) const;
    void paintContent(QPainter& painter, int index, const QRectF& box) const;

    BubbleMapModel* m_model = nullptr;
    int m_hovered = -1;
    bool m_pressed = false;
    qreal m_cornerRadius = 0;
    QColor m_background;
    QColor m_from;
    QColor m_to;
    QFont m_bodyFont;
    QFont m_sizeFont;
};
