#include "SpaceMap/BubbleMapCanvas.h"

#include "Foundation/Formatters.h"
#include "SpaceMap/BubblePainting.h"

#include <QtGui/QFontMetricsF>
#include <QtGui/QPainter>
#include <QtGui/QPainterPath>

#include <algorithm>
#include <cmath>
#include <numeric>

namespace {

constexpr qreal padding = 8;
constexpr qreal spacing = 3;

/// How far a text may reach beyond its bubble.
constexpr qreal overhang = 60;

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
    std::vector<int> order(m_model == nullptr ? 0 : m_model->bubbles().size());
    std::iota(order.begin(), order.end(), 0);
    for (const int raised : {m_focused, m_hovered}) {
        const auto place = std::find(order.begin(), order.end(), raised);
        if (place != order.end()) {
            std::rotate(place, place + 1, order.end());
        }
    }
    for (std::span<const int> rest = order; !rest.empty(); rest = rest.subspan(1)) {
        paintBubble(*painter, rest.front(), bubblesAbove(rest));
    }
}

/// The circles of all but the first of `order` that touch the first one.
std::vector<Bubble> BubbleMapCanvas::bubblesAbove(std::span<const int> order) const {
    const Bubble& lowest = m_model->bubbles()[static_cast<size_t>(order.front())];
    std::vector<Bubble> above;
    for (const int index : order.subspan(1)) {
        const Bubble& bubble = m_model->bubbles()[static_cast<size_t>(index)];
        if (std::hypot(bubble.x - lowest.x, bubble.y - lowest.y) < (bubble.diameter + lowest.diameter) / 2 + overhang) {
            above.push_back(bubble);
        }
    }
    return above;
}

void BubbleMapCanvas::paintBubble(QPainter& painter, int index, std::span<const Bubble> above) const {
    const Bubble& bubble = m_model->bubbles()[static_cast<size_t>(index)];
    const QRectF box = boxOf(bubble);
    const qreal scale = deviceScale(painter);
    const QPointF corner(std::floor(box.left() * scale), std::floor(box.top() * scale));
    QImage disc = gradientDisc({box.topLeft() * scale - corner, box.size() * scale}, m_from, m_to);
    disc.setDevicePixelRatio(scale);
    painter.drawImage(corner / scale, disc);
    painter.setPen(Qt::NoPen);
    if (index == m_hovered) {
        painter.setBrush(m_pressed ? QColor(0, 0, 0, 40) : QColor(255, 255, 255, 16));
        painter.drawEllipse(box);
    }
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(QColor::fromRgbF(1, 1, 1, 0.35F), 1));
    painter.drawEllipse(box.adjusted(0.5, 0.5, -0.5, -0.5));
    paintContent(painter, index, above);
}

/// Paints the symbol, the name if the bubble is large enough, and the size, centred in the bubble.
void BubbleMapCanvas::paintContent(QPainter& painter, int index, std::span<const Bubble> above) const {
    const FileItem& item = m_model->items()[static_cast<size_t>(index)];
    const Bubble& bubble = m_model->bubbles()[static_cast<size_t>(index)];
    const QFontMetricsF body(m_bodyFont);
    const qreal symbolSize = m_bodyFont.pixelSize() * 1.15;
    const bool isNamed = bubble.diameter > namedBubbleDiameter;
    const QStringList name =
        isNamed ? nameLines(item.name(), m_bodyFont, bubble.diameter - 2 * padding) : QStringList();
    const QStringList size{Formatters::size(item.size)};

    const qreal nameHeight = name.isEmpty() ? 0 : spacing + static_cast<qreal>(name.size()) * body.height();
    const qreal top = bubble.y - (symbolSize + nameHeight + spacing + QFontMetricsF(m_sizeFont).height()) / 2;
    const qreal below = top + symbolSize + spacing;
    const BubbleText texts[] = {{name, m_bodyFont, below}, {size, m_sizeFont, below + nameHeight}};
    // The shade of the texts comes before the symbol.
    paintTexts(painter, texts, bubble, above);
    paintSymbol(painter, item.category, QRectF(bubble.x - symbolSize / 2, top, symbolSize, symbolSize), above);
}
