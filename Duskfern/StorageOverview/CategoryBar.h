#pragma once

#include <QtQml/qqmlregistration.h>
#include <QtCore/QVariantList>
#include <QtGui/QColor>
#include <QtQuick/QQuickPaintedItem>

#include <vector>

/// A segment of the bar, in pixels.
struct CategorySegment {
    double x = 0;
    double width = 0;

    bool operator==(const CategorySegment&) const = default;
};

/// The segments of a bar that divides `bandWidth` in proportion to `sizes`, in order, with gaps of 2 pixels. A size
/// above 0 gets at least 2 pixels; a size of 0 gets no width but keeps its gap. Together they may be wider than the
/// bar, which clips them.
[[nodiscard]] std::vector<CategorySegment> categorySegments(const std::vector<qint64>& sizes, double bandWidth);

/// The categories of the main disk as segments of one rounded bar; a pale bar if all sizes are 0.
class CategoryBar : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT

public:
    explicit CategoryBar(QQuickItem* parent = nullptr);

    /// A list of `storageCategory`.
    Q_PROPERTY(QVariantList categories MEMBER m_categories NOTIFY appearanceChanged)
    /// One colour per category, in order; repeated if there are more categories.
    Q_PROPERTY(QList<QColor> colors MEMBER m_colors NOTIFY appearanceChanged)
    Q_PROPERTY(QColor emptyColor MEMBER m_emptyColor NOTIFY appearanceChanged)
    Q_PROPERTY(qreal cornerRadius MEMBER m_cornerRadius NOTIFY appearanceChanged)
    Q_SIGNAL void appearanceChanged();

    void paint(QPainter* painter) override;

private:
    QVariantList m_categories;
    QList<QColor> m_colors;
    QColor m_emptyColor;
    qreal m_cornerRadius = 0;
};
