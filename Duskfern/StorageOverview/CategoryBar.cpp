#include "StorageOverview/CategoryBar.h"

#include "Foundation/CheckedSum.h"
#include "StorageOverview/StorageCategory.h"

#include <QtGui/QPainter>
#include <QtGui/QPainterPath>

#include <algorithm>

namespace {

constexpr double gap = 2;
constexpr double minimumWidth = 2;

std::int64_t sum(const std::vector<qint64>& sizes) {
    std::int64_t total = 0;
    for (const qint64 size : sizes) {
        total = checkedSum(total, size);
    }
    return total;
}

}  // namespace

std::vector<CategorySegment> categorySegments(const std::vector<qint64>& sizes, double bandWidth) {
    const auto total = static_cast<double>(std::max<std::int64_t>(1, sum(sizes)));
    std::vector<CategorySegment> segments;
    double x = 0;
    for (const qint64 size : sizes) {
        const double share = bandWidth * (static_cast<double>(size) / total);
        segments.push_back({x, std::max(size > 0 ? minimumWidth : 0, share)});
        x += segments.back().width + gap;
    }
    return segments;
}

CategoryBar::CategoryBar(QQuickItem* parent) : QQuickPaintedItem(parent) {
    setAntialiasing(true);
    connect(this, &CategoryBar::appearanceChanged, this, [this] { update(); });
}

void CategoryBar::paint(QPainter* painter) {
    painter->setRenderHint(QPainter::Antialiasing);
    QPainterPath band;
    band.addRoundedRect(boundingRect(), m_cornerRadius, m_cornerRadius);
    std::vector<qint64> sizes;
    for (const QVariant& category : std::as_const(m_categories)) {
        sizes.push_back(category.value<StorageCategory>().size);
    }
    if (sum(sizes) == 0) {
        painter->fillPath(band, m_emptyColor);
        return;
    }
    if (m_colors.isEmpty()) {
        return;
    }
    const std::vector<CategorySegment> segments = categorySegments(sizes, width());
    for (std::size_t i = 0; i < segments.size(); ++i) {
        QPainterPath segment;
        segment.addRect(segments[i].x, 0, segments[i].width, height());
        painter->fillPath(segment.intersected(band), m_colors[static_cast<qsizetype>(i) % m_colors.size()]);
    }
}
