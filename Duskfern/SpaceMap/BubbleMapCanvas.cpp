#include "SpaceMap/BubbleMapCanvas.h"

#include "Foundation/Formatters.h"
#include "Theme/SymbolProvider.h"

#include <QtGui/QFontMetricsF>
#include <QtGui/QPainter>
#include <QtGui/QPainterPath>
#include <QtGui/QTextLayout>

namespace {

constexpr qreal padding = 8;
constexpr qreal spacing = 3;

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
    for (int index = 0; m_model != nullptr && index < m_model->count(); ++index) {
        paintBubble(*painter, index);
    }
}

void BubbleMapCanvas::paintBubble(QPainter& painter, int index) const {
    const Bubble& bubble = m_model->bubbles()[static_cast<size_t>(index)];
    const qreal radius = bubble.diameter / 2;
    const QRectF box(bubble.x - radius, bubble.y - radius, bubble.diameter, bubble.diameter);
    QLinearGradient gradient(box.topLeft(), box.bottomRight());
    gradient.setColorAt(0, m_from);
    gradient.setColorAt(1, m_to);
    painter.setPen(Qt::NoPen);
    painter.setBrush(gradient);
    painter.drawEllipse(box);
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

    const qreal scale = painter.device()->devicePixelRatioF() * painter.transform().m11();
    const QImage symbol =
        SymbolProvider::image(FileCategories::icon(item.category), Qt::white, qRound(symbolSize * scale));
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
