#include "SpaceMap/BubblePainting.h"

#include "Theme/SymbolProvider.h"

#include <QtGui/QFontMetricsF>
#include <QtGui/QPainterPath>
#include <QtGui/QTextLayout>

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

/// How dark the shade behind white text is: on a bubble, and where the text reaches beyond it.
constexpr qreal shadeInside = 0.38;
constexpr qreal shadeOutside = 0.58;

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

struct Line {
    QString text;
    QFont font;
    QRectF box;
};

std::vector<Line> linesOf(const BubbleText& text, qreal middle) {
    const QFontMetricsF metrics(text.font);
    std::vector<Line> lines;
    qreal top = text.top;
    for (const QString& line : text.lines) {
        const qreal width = metrics.horizontalAdvance(line);
        lines.push_back({line, text.font, QRectF(middle - width / 2, top, width, metrics.height())});
        top += metrics.height();
    }
    return lines;
}

/// Paints a shade, of full strength under `box`: on the bubble one that fades and ends with the bubble, and where the
/// box reaches beyond it one with a narrow edge. A wide one looks like dirt on the map.
void paintShade(QPainter& painter, const Bubble& bubble, const QRectF& box) {
    constexpr int steps = 8;
    const bool isBeyond = reachesBeyond(bubble, box);
    const qreal strength = isBeyond ? shadeOutside : shadeInside;
    const qreal softness = isBeyond ? 0.3 : 1.25;
    painter.save();
    if (!isBeyond) {
        QPainterPath disc;
        disc.addEllipse(boxOf(bubble));
        painter.setClipPath(disc, Qt::IntersectClip);
    }
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor::fromRgbF(0, 0, 0, static_cast<float>(1 - std::pow(1 - strength, 1.0 / steps))));
    for (int step = 0; step < steps; ++step) {
        const qreal reach = softness * step;
        const QRectF shade = box.adjusted(-reach - 3, -reach, reach + 3, reach);
        painter.drawRoundedRect(shade, 8 + reach, 8 + reach);
    }
    painter.restore();
}

/// `color`, premultiplied, where `coverage` of 255 of a pixel is covered. Multiplies two channels at a time.
QRgb covered(QRgb color, QRgb coverage) {
    constexpr QRgb even = 0x00ff00ff;
    const auto rounded = [](QRgb product) { return product + ((product >> 8) & even) + 0x00800080; };
    return ((rounded((color & even) * coverage) >> 8) & even) | (rounded((color >> 8 & even) * coverage) & ~even);
}

}  // namespace

QRectF boxOf(const Bubble& bubble) {
    const qreal radius = bubble.diameter / 2;
    return {bubble.x - radius, bubble.y - radius, bubble.diameter, bubble.diameter};
}

qreal deviceScale(const QPainter& painter) {
    return painter.device()->devicePixelRatioF() * painter.transform().m11();
}

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

void paintSymbol(QPainter& painter, FileCategory category, const QRectF& box, std::span<const Bubble> above) {
    QImage symbol =
        SymbolProvider::image(FileCategories::icon(category), Qt::white, qRound(box.width() * deviceScale(painter)));
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

void paintTexts(QPainter& painter, std::span<const BubbleText> texts, const Bubble& bubble,
                std::span<const Bubble> above) {
    std::vector<Line> shown;
    for (const BubbleText& text : texts) {
        const std::vector<Line> lines = linesOf(text, bubble.x);
        const bool isCut = std::any_of(lines.begin(), lines.end(), [&](const Line& line) {
            return std::any_of(above.begin(), above.end(),
                               [&](const Bubble& other) { return touches(other, line.box.adjusted(0, 1, 0, -1)); });
        });
        if (!isCut) {
            shown.insert(shown.end(), lines.begin(), lines.end());
        }
    }
    if (shown.empty()) {
        return;
    }
    QRectF block;
    for (const Line& line : shown) {
        block |= line.box;
    }
    paintShade(painter, bubble, block);
    painter.setPen(Qt::white);
    for (const Line& line : shown) {
        painter.setFont(line.font);
        painter.drawText(line.box.adjusted(-10, 0, 10, 0), Qt::AlignCenter | Qt::TextSingleLine, line.text);
    }
}
