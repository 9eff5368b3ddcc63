#pragma once

#include <QtQml/qqmlregistration.h>
#include <QtQuick/QQuickPaintedItem>

/// The application's icon with rounded corners, and perhaps a soft shadow around it.
class AppIcon : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT

public:
    explicit AppIcon(QQuickItem* parent = nullptr) : QQuickPaintedItem(parent) {}

    Q_PROPERTY(qreal radius MEMBER m_radius WRITE setRadius NOTIFY changed)
    void setRadius(qreal radius);

    /// How far the shadow reaches beyond the icon, which shrinks by as much on each side.
    Q_PROPERTY(qreal shadow MEMBER m_shadow WRITE setShadow NOTIFY changed)
    void setShadow(qreal shadow);

    Q_SIGNAL void changed();

    void paint(QPainter* painter) override;

private:
    qreal m_radius = 0;
    qreal m_shadow = 0;
};
