#include "SpaceMap/BubbleMapCanvas.h"

#include "Foundation/Formatters.h"
#include "Theme/SymbolProvider.h"

#include <QtGui/QFontMetricsF>
#include <QtGui/QPainter>
#include <QtGui/QPainterPath>
#include <QtGui/QTextLayout>

#include <algorithm>
#include <cmath>

namespace {

constexpr qreal padding = 8;
constexpr qreal spacing = 3;

/// The square around a bubble.
QRectF boxOf(const Bubble& bubble) {
    const qreal radius = bubble.diameter / 2;
    return {bubble.x - radius, bubble.y - radius, bubble.diameter, bubble.diameter};
}

/// Device pixels per logical one.
qreal deviceScale(const QPainter& painter) {
    return painter.device()->devicePixelRatioF() * painter.transform().m11();
}

/// The name in at most two lines; the second one is elided.
QStringList nameLines(const QString& name, const QFont& font, qreal width) {
    QTextLayout layout(name, font);
    QTextOption option(Qt::AlignHCenter);
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    layout.beginLayout();
    QTextLine first = layout.createLine();
    first.setLineWidth(width);
    layout.endLayout();
    const QString rest = name.mid(first.textLength());
    QStringList lines{name.left(first.textLength()).trimmed()};
    if (!rest.isEmpty()) {
        lines << QFontMetricsF(font).elidedText(rest, Qt::ElideRight, width);
    }
    return lines;
}

/// `color`, premultiplied, where `coverage` of 255 of a pixel is covered. Multiplies two channels at a time.
QRgb covered(QRgb color, QRgb coverage) {
    constexpr QRgb even = 0x00ff00ff;
    const auto rounded = [](QRgb product) { return product + ((product >> 8) & even) + 0x00800080; };
    return ((rounded((color & even) * coverage) >> 8) & even) | (rounded((color >> 8 & even) * coverage) & ~even);
}

/// The disc in `box`, in device pixels of which the first is at (0, 0), with a colour that runs from the top left of
/// the box to its bottom right. Painted here because Qt shares the work of a gradient among threads, and takes longer
/// to wake them than to paint.
QImage gradientDisc(const QRectF& box, const QColor& from, const QColor& to) {
    const int side = qCeil(std::max(box.right(), box.bottom()));
    QImage disc(side, side, QImage::Format_ARGB32_Premultiplied);
    disc.fill(Qt::transparent);
    QPainter painter(&disc);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::white);
    painter.drawEllipse(box);
    painter.end();

    // Each row has the colours of the one above, moved by a pixel.
    QImage line(2 * side, 1, QImage::Format_ARGB32_Premultiplied);
    line.fill(Qt::transparent);
    QLinearGradient gradient(box.left() + box.top(), 0, box.right() + box.bottom(), 0);
    gradient.setColorAt(0, from);
    gradient.setColorAt(1, to);
    QPainter(&line).fillRect(line.rect(), gradient);
    const auto* const colors = reinterpret_cast<const QRgb*>(line.constScanLine(0));  // NOLINT: pixels of 32 bits
    for (int y = 0; y < side; ++y) {
        auto* const row = reinterpret_cast<QRgb*>(disc.scanLine(y));  // NOLINT
        for (int x = 0; x < side; ++x) {
            row[x] = covered(colors[x + y], row[x] >> 24);
        }
    }
    return disc;
}

}  // namespace

BubbleMapCanvas::BubbleMapCanvas(QQuickItem* parent) : QQuickPaintedItem(parent) {
    setAntialiasing(true);
    connect(this, &BubbleMapCanvas::appearanceChanged, this, [this] { update(); });
}

void BubbleMapCanvas::setModel(BubbleMapModel* model) {
    m_model = model;
    connect(model, &QAbstractItemModel::rowsInserted, this, [this] { update(); });
    connect(model, &QAbstractItemModel::rowsRemoved, this, [this] { update(); });
    connect(model, &QAbstractItemModel::dataChanged, this, [this] { update(); });
    Q_EMIT modelChanged();
}

void BubbleMapCanvas::paint(QPainter* painter) {
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    QPainterPath area;
    area.addRoundedRect(boundingRect(), m_cornerRadius, m_cornerRadius);
    painter->fillPath(area, m_background);
    // Clipping to a path takes time, and is seldom needed.
    const QRectF middle = boundingRect().adjusted(m_cornerRadius, 0, -m_cornerRadius, 0);
    const bool fits = m_model == nullptr || std::all_of(m_model->bubbles().begin(), m_model->bubbles().end(),
                                                        [&](const Bubble& it) { return middle.contains(boxOf(it)); });
    if (!fits) {
        painter->setClipPath(area);
    }
    for (int index = 0; m_model != nullptr && index < m_model->count(); ++index) {
        paintBubble(*painter, index);
    }
}

void BubbleMapCanvas::paintBubble(QPainter& painter, int index) const {
    const QRectF box = boxOf(m_model->bubbles()[static_cast<size_t>(index)]);
    const qreal scale = deviceScale(painter);
    const QPointF corner(std::floor(box.left() * scale), std::floor(box.top() * scale));
    QImage disc = gradientDisc({box.topLeft() * scale - corner, box.size() * scale}, m_from, m_to);
    disc.setDevicePixelRatio(scale);
    painter.drawImage(corner / scale, disc);
    painter.setPen(Qt::NoPen);
    if (index == m_hovered) {
        painter.setBrush(m_pressed ? QColor(0, 0, 0, 50) : QColor(255, 255, 255, 40));
        painter.drawEllipse(box);
    }
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(QColor::fromRgbF(1, 1, 1, 0.35F), 1));
    painter.drawEllipse(box.adjusted(0.5, 0.5, -0.5, -0.5));
    paintContent(painter, index, box.adjusted(padding, padding, -padding, -padding));
}

/// Paints the symbol, the name if the bubble is large enough, and the size, centred in `box`.
void BubbleMapCanvas::paintContent(QPainter& painter, int index, const QRectF& box) const {
    const FileItem& item = m_model->items()[static_cast<size_t>(index)];
    const QFontMetricsF body(m_bodyFont);
    const QFontMetricsF caption(m_sizeFont);
    const qreal symbolSize = m_bodyFont.pixelSize() * 1.15;
    const bool named = m_model->bubbles()[static_cast<size_t>(index)].diameter > namedBubbleDiameter;
    const QStringList lines = named ? nameLines(item.name(), m_bodyFont, box.width()) : QStringList();

    qreal height = symbolSize + spacing + caption.height();
    height += lines.isEmpty() ? 0 : spacing + static_cast<qreal>(lines.size()) * body.height();
    qreal top = box.center().y() - height / 2;

    const QImage symbol = SymbolProvider::image(FileCategories::icon(item.category), Qt::white,
                                                qRound(symbolSize * deviceScale(painter)));
    painter.drawImage(QRectF(box.center().x() - symbolSize / 2, top, symbolSize, symbolSize), symbol);
    top += symbolSize + spacing;

    painter.setPen(Qt::white);
    const auto write = [&](const QString& text, const QFont& font, const QFontMetricsF& metrics) {
        painter.setFont(font);
        // Text wider than the circle extends equally on both sides.
        const QRectF line(box.center().x() - 500, top, 1000, metrics.height());
        painter.drawText(line, Qt::AlignCenter | Qt::TextSingleLine, text);
        top += metrics.height();
    };
    for (const QString& line : lines) {
        write(line, m_bodyFont, body);
    }
    top += lines.isEmpty() ? 0 : spacing;
    write(Formatters::size(item.size), m_sizeFont, caption);
}
