#include "SpaceMap/BubbleMapCanvas.h"

#include "Foundation/Formatters.h"
#include "Theme/SymbolProvider.h"

#include <QtGui/QFontMetricsF>
#include <QtGui/QPainter>
#include <QtGui/QPainterPath>
#include <QtGui/QTextLayout>

#include <algorithm>
#include <cmath>
#include <functional>
#include <numeric>

namespace {

constexpr qreal padding = 8;
constexpr qreal spacing = 3;

/// How far a text may reach beyond its bubble.
constexpr qreal overhang = 60;

/// How dark the shade behind white text is: on a bubble, and where the text reaches beyond it.
constexpr qreal shadeInside = 0.38;
constexpr qreal shadeOutside = 0.58;

QRectF boxOf(const Bubble& bubble) {
    const qreal radius = bubble.diameter / 2;
    return {bubble.x - radius, bubble.y - radius, bubble.diameter, bubble.diameter};
}

/// Whether a part of `box` lies in the circle.
bool touches(const Bubble& bubble, const QRectF& box) {
    const qreal x = std::clamp(bubble.x, box.left(), box.right());
    const qreal y = std::clamp(bubble.y, box.top(), box.bottom());
    return std::hypot(x - bubble.x, y - bubble.y) < bubble.diameter / 2;
}

/// Whether letters in the middle half of `box` reach beyond the circle.
bool reachesBeyond(const Bubble& bubble, const QRectF& box) {
    const qreal y = std::abs(box.center().y() - bubble.y) + box.height() / 4;
    return std::hypot(box.width() / 2, y) > bubble.diameter / 2 + 1;
}

/// The name in at most two lines; the second one is elided, its extension last.
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
        lines << QFontMetricsF(font).elidedText(rest, Qt::ElideMiddle, width);
    }
    return lines;
}

/// Paints a soft shade, of full strength under `box`.
void paintShade(QPainter& painter, const QRectF& box, qreal strength) {
    constexpr int steps = 8;
    constexpr qreal softness = 1.25;
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor::fromRgbF(0, 0, 0, static_cast<float>(1 - std::pow(1 - strength, 1.0 / steps))));
    for (int step = 0; step < steps; ++step) {
        const qreal reach = softness * step;
        const QRectF shade = box.adjusted(-reach - 3, -reach, reach + 3, reach);
        painter.drawRoundedRect(shade, 8 + reach, 8 + reach);
    }
}

/// Paints what of a symbol no bubble above covers.
void paintSymbol(QPainter& painter, FileCategory category, const QRectF& box, std::span<const Bubble> above) {
    const qreal scale = painter.device()->devicePixelRatioF() * painter.transform().m11();
    QImage symbol = SymbolProvider::image(FileCategories::icon(category), Qt::white, qRound(box.width() * scale));
    for (const Bubble& bubble : above) {
        if (touches(bubble, box)) {
            QPainter eraser(&symbol);
            eraser.setRenderHint(QPainter::Antialiasing);
            eraser.setCompositionMode(QPainter::CompositionMode_Clear);
            eraser.scale(symbol.width() / box.width(), symbol.height() / box.height());
            eraser.translate(-box.topLeft());
            eraser.setPen(Qt::NoPen);
            eraser.setBrush(Qt::black);
            eraser.drawEllipse(boxOf(bubble));
        }
    }
    painter.drawImage(box, symbol);
}

/// Paints lines of text on a shade, centred below `top`; nothing if a bubble above would cut one of them.
void paintText(QPainter& painter, const QStringList& lines, const QFont& font, const QPointF& top, const Bubble& bubble,
               std::span<const Bubble> above) {
    const QFontMetricsF metrics(font);
    std::vector<QRectF> boxes;
    for (const QString& line : lines) {
        const qreal width = metrics.horizontalAdvance(line);
        const qreal y = top.y() + metrics.height() * static_cast<qreal>(boxes.size());
        boxes.emplace_back(top.x() - width / 2, y, width, metrics.height());
        if (std::any_of(above.begin(), above.end(),
                        [&](const Bubble& other) { return touches(other, boxes.back().adjusted(0, 1, 0, -1)); })) {
            return;
        }
    }
    if (!boxes.empty()) {
        const QRectF block = std::accumulate(boxes.begin() + 1, boxes.end(), boxes.front(), std::bit_or<>());
        paintShade(painter, block, reachesBeyond(bubble, block) ? shadeOutside : shadeInside);
    }
    painter.setPen(Qt::white);
    painter.setFont(font);
    for (std::size_t line = 0; line < boxes.size(); ++line) {
        painter.drawText(boxes[line].adjusted(-10, 0, 10, 0), Qt::AlignCenter | Qt::TextSingleLine,
                         lines[static_cast<qsizetype>(line)]);
    }
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
    painter->setClipPath(area);
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
    QLinearGradient gradient(box.topLeft(), box.bottomRight());
    gradient.setColorAt(0, m_from);
    gradient.setColorAt(1, m_to);
    painter.setPen(Qt::NoPen);
    painter.setBrush(gradient);
    painter.drawEllipse(box);
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
    qreal top = bubble.y - (symbolSize + nameHeight + spacing + QFontMetricsF(m_sizeFont).height()) / 2;
    paintSymbol(painter, item.category, QRectF(bubble.x - symbolSize / 2, top, symbolSize, symbolSize), above);
    top += symbolSize + spacing;
    paintText(painter, name, m_bodyFont, {bubble.x, top}, bubble, above);
    paintText(painter, size, m_sizeFont, {bubble.x, top + nameHeight}, bubble, above);
}
