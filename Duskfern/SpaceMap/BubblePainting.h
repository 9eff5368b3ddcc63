#pragma once

#include "SpaceMap/BubbleLayout.h"
#include "SpaceScan/FileCategory.h"

#include <QtCore/QStringList>
#include <QtGui/QFont>
#include <QtGui/QImage>
#include <QtGui/QPainter>

#include <span>

/// The square around a bubble.
[[nodiscard]] QRectF boxOf(const Bubble& bubble);

/// Device pixels per logical one.
[[nodiscard]] qreal deviceScale(const QPainter& painter);

/// The name in at most two lines; the second one is elided, its extension last.
[[nodiscard]] QStringList nameLines(const QString& name, const QFont& font, qreal width);

/// The disc in `box`, in device pixels of which the first is at (0, 0), with a colour that runs from the top left of
/// the box to its bottom right. Painted here because Qt shares the work of a gradient among threads, and takes longer
/// to wake them than to paint.
[[nodiscard]] QImage gradientDisc(const QRectF& box, const QColor& from, const QColor& to);

/// Paints what of a symbol no bubble above covers.
void paintSymbol(QPainter& painter, FileCategory category, const QRectF& box, std::span<const Bubble> above);

/// Lines of one text in a bubble, centred from `top` on.
struct BubbleText {
    QStringList lines;
    QFont font;
    qreal top = 0;
};

/// Paints texts on a shade. Leaves out a text of which a bubble above would cut a part.
void paintTexts(QPainter& painter, std::span<const BubbleText> texts, const Bubble& bubble,
                std::span<const Bubble> above);
