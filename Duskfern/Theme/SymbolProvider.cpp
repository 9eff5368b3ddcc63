#include "Theme/SymbolProvider.h"

#include <QtCore/QFile>
#include <QtGui/QColor>
#include <QtGui/QPainter>
#include <QtSvg/QSvgRenderer>

QImage SymbolProvider::requestImage(const QString& id, QSize* size, const QSize& requestedSize) {
    const qsizetype slash = id.indexOf(QLatin1Char('/'));
    const QColor color(QLatin1Char('#') + QStringView(id).mid(slash + 1).toString());
    QImage drawn = image(id.left(slash), color, std::max(1, requestedSize.width()));
    *size = drawn.size();
    return drawn;
}

QImage SymbolProvider::image(const QString& symbol, const QColor& color, int pixels) {
    QFile file(QStringLiteral(":/symbols/%1.svg").arg(symbol));
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    // The glyphs use currentColor, which is replaced by the requested colour.
    QByteArray svg = file.readAll();
    svg.replace("currentColor", color.name().toLatin1());
    QSvgRenderer renderer(svg);
    QImage image(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setOpacity(color.alphaF());
    renderer.render(&painter);
    return image;
}
