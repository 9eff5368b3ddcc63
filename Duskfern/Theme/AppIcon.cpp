#include "Theme/AppIcon.h"

#include <QtGui/QPainter>
#include <QtGui/QPainterPath>
#include <QtSvg/QSvgRenderer>

#include <cmath>

void AppIcon::setRadius(qreal radius) {
    m_radius = radius;
    Q_EMIT changed();
    update();
}

void AppIcon::setShadow(qreal shadow) {
    m_shadow = shadow;
    Q_EMIT changed();
    update();
}

void AppIcon::paint(QPainter* painter) {
    const QRectF box = QRectF(0, 0, width(), height()).adjusted(m_shadow, m_shadow, -m_shadow, -m_shadow);
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    // Draws the shadow as outlines in steps of half a pixel, from outside to inside, because not every renderer can
    // blur.
    painter->setCompositionMode(QPainter::CompositionMode_Source);
    for (qreal reach = m_shadow; reach > -m_shadow && m_shadow > 0; reach -= 0.5) {
        const double coverage = 0.5 * std::erfc(reach / m_shadow * 1.8);
        painter->setBrush(QColor::fromRgbF(0, 0, 0, static_cast<float>(0.33 * coverage)));
        const qreal radius = std::max(0.0, m_radius + reach);
        painter->drawRoundedRect(box.adjusted(-reach, -reach, reach, reach), radius, radius);
    }
    painter->setCompositionMode(QPainter::CompositionMode_SourceOver);

    // Painted with a brush, because clipping does not antialias.
    const qreal scale = painter->device()->devicePixelRatioF() * painter->transform().m11();
    QImage image((box.size() * scale).toSize(), QImage::Format_ARGB32_Premultiplied);
    if (image.isNull()) {
        return;
    }
    image.fill(Qt::transparent);
    QPainter inside(&image);
    QSvgRenderer(QStringLiteral(":/assets/AppIcon21.svg")).render(&inside);
    inside.end();
    QBrush brush(image);
    brush.setTransform(QTransform::fromTranslate(box.x(), box.y()).scale(1 / scale, 1 / scale));
    painter->setBrush(brush);
    painter->drawRoundedRect(box, m_radius, m_radius);
}
