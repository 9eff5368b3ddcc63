#pragma once

#include <QtQml/qqmlregistration.h>
#include <QtCore/QVariantList>
#include <QtGui/QColor>
#include <QtQuick/QQuickPaintedItem>

#include <vector>

/// One stretch of the bar, in its pixels.
struct CategorySegment {
    double x = 0;
    double width = 0;

    bool operator==(const CategorySegment&) const = default;
};

/// Where the segments of a bar lie that shares `bandWidth` among `sizes`, in order, with 2 pixels between them. What is
/// not empty is at least 2 wide, and what is empty takes none but keeps its gap; so all together they may be a little
/// wider than the bar, which cuts off what hangs out.
[[nodiscard]] std::vector<CategorySegment> categorySegments(const std::vector<qint64>& sizes, double bandWidth);

/// The main disk's kinds as stretches of one band with round ends; a faint band while there is nothing to show.
class CategoryBar : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT

public:
    explicit CategoryBar(QQuickItem* parent = nullptr);

    /// A list of `storageCategory`.
    Q_PROPERTY(QVariantList categories MEMBER m_categories NOTIFY lookChanged)
    /// The first category has the first colour, and so on, beginning anew at the end.
    Q_PROPERTY(QList<QColor> colors MEMBER m_colors NOTIFY lookChanged)
    Q_PROPERTY(QColor emptyColor MEMBER m_emptyColor NOTIFY lookChanged)
    Q_PROPERTY(qreal cornerRadius MEMBER m_cornerRadius NOTIFY lookChanged)
    Q_SIGNAL void lookChanged();

    void paint(QPainter* painter) override;

private:
    QVariantList m_categories;
    QList<QColor> m_colors;
    QColor m_emptyColor;
    qreal m_cornerRadius = 0;
};
