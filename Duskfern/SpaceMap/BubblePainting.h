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

/// Paints lines of text on a shade, centred below `top`; nothing if a bubble above would cut one of them.
void paintText(QPainter& painter, const QStringList& lines, const QFont& font, const QPointF& top, const Bubble& bubble,
               std::span<const Bubble> above);
