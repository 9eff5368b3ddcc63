#include "Theme/SymbolProvider.h"

#include <QtCore/QCache>
#include <QtCore/QFile>
#include <QtGui/QColor>
#include <QtGui/QPainter>
#include <QtSvg/QSvgRenderer>

#include <mutex>

namespace {

/// Bytes of drawn symbols that are kept. All that the screens show in one colour scheme takes a quarter of it.
constexpr int keptBytes = 1 << 19;

/// The symbols drawn last, by name, colour and size. The map paints them on the thread that draws the window,
/// everything else on the main one.
struct Drawings {
    std::mutex mutex;
    QCache<QString, QImage> images{keptBytes};
};

Drawings& drawings() {
    static Drawings here;
    return here;
}

QImage draw(const QString& symbol, const QColor& color, int pixels) {
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

}  // namespace

QImage SymbolProvider::requestImage(const QString& id, QSize* size, const QSize& requestedSize) {
    const qsizetype slash = id.indexOf(QLatin1Char('/'));
    const QColor color(QLatin1Char('#') + QStringView(id).mid(slash + 1).toString());
    QImage drawn = image(id.left(slash), color, std::max(1, requestedSize.width()));
    *size = drawn.size();
    return drawn;
}

QImage SymbolProvider::image(const QString& symbol, const QColor& color, int pixels) {
    const QString drawing = QStringLiteral("%1/%2/%3").arg(symbol).arg(color.rgba()).arg(pixels);
    const std::lock_guard lock(drawings().mutex);
    if (const QImage* const kept = drawings().images.object(drawing)) {
        return *kept;
    }
    QImage drawn = draw(symbol, color, pixels);
    drawings().images.insert(drawing, new QImage(drawn), static_cast<qsizetype>(drawn.sizeInBytes()) + 1);
    return drawn;
}
