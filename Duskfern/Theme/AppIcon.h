#pragma once

#include <QtQml/qqmlregistration.h>
#include <QtQuick/QQuickPaintedItem>

/// The application icon with rounded corners and an optional soft shadow.
class AppIcon : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT

public:
    explicit AppIcon(QQuickItem* parent = nullptr) : QQuickPaintedItem(parent) {}

    Q_PROPERTY(qreal radius MEMBER m_radius WRITE setRadius NOTIFY changed)
    void setRadius(qreal radius);

    /// The extent of the shadow. The icon shrinks by this on each side.
    Q_PROPERTY(qreal shadow MEMBER m_shadow WRITE setShadow NOTIFY changed)
    void setShadow(qreal shadow);

    Q_SIGNAL void changed();

    void paint(QPainter* painter) override;

private:
    qreal m_radius = 0;
    qreal m_shadow = 0;
};
