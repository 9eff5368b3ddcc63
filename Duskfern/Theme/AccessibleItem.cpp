#include "Theme/AccessibleItem.h"

#include <QtQuick/private/qaccessiblequickitem_p.h>
#include <QtQuick/private/qquickitem_p.h>

#include <algorithm>
#include <tuple>

namespace {

class AccessibleItem final : public QAccessibleQuickItem {
public:
    using QAccessibleQuickItem::QAccessibleQuickItem;

    [[nodiscard]] QAccessible::State state() const override {
        QAccessible::State state = QAccessibleQuickItem::state();
        state.disabled = !item()->isEnabled();
        state.modal = role() == QAccessible::Dialog;
        return state;
    }

    [[nodiscard]] QString text(QAccessible::Text kind) const override {
        QString text = QAccessibleQuickItem::text(kind);
        if (kind == QAccessible::Name && text.isEmpty() && role() == QAccessible::PopupMenu) {
            return item()->parent()->property("title").toString();  // Of the menu, which is no item.
        }
        if (kind != QAccessible::Description || !isRow(role())) {
            return text;
        }
        const QString place = position();
        return text.isEmpty() || place.isEmpty() ? text + place : text + QStringLiteral(", ") + place;
    }

    [[nodiscard]] int childCount() const override {
        return isList() ? static_cast<int>(rows().size()) : QAccessibleQuickItem::childCount();
    }

    [[nodiscard]] QAccessibleInterface* child(int index) const override {
        return isList() ? QAccessible::queryAccessibleInterface(rows().value(index))
                        : QAccessibleQuickItem::child(index);
    }

    [[nodiscard]] int indexOfChild(const QAccessibleInterface* child) const override {
        return isList() ? static_cast<int>(rows().indexOf(qobject_cast<QQuickItem*>(child->object())))
                        : QAccessibleQuickItem::indexOfChild(child);
    }

    [[nodiscard]] QAccessibleInterface* focusChild() const override {
        for (int index = 0; isList() && index < childCount(); ++index) {
            if (QAccessibleInterface* const row = child(index); row->state().focused) {
                return row;
            }
        }
        return QAccessibleQuickItem::focusChild();
    }

private:
    [[nodiscard]] bool isList() const { return role() == QAccessible::List || role() == QAccessible::PageTabList; }
    static bool isRow(QAccessible::Role role) { return role == QAccessible::ListItem || role == QAccessible::PageTab; }

    /// The visible rows from top to bottom, then from left to right. Rows that are reused were created in another
    /// order.
    [[nodiscard]] QList<QQuickItem*> rows() const {
        QList<QQuickItem*> rows = childItems();
        rows.removeIf([](const QQuickItem* row) { return !row->isVisible(); });
        const auto place = [](QQuickItem* row) {
            const QPointF corner = row->mapToScene({});
            // The scroll bar is read last.
            return std::tuple(!isRow(QAccessible::queryAccessibleInterface(row)->role()), corner.y(), corner.x());
        };
        std::stable_sort(rows.begin(), rows.end(), [&](QQuickItem* a, QQuickItem* b) { return place(a) < place(b); });
        return rows;
    }

    /// "3 de 1000", for a row with an `index` in a list with a `count`: a list knows of more rows than it has created.
    [[nodiscard]] QString position() const {
        const QVariant index = item()->property("index");
        const QAccessibleInterface* const list = parent();
        const QVariant count =
            list != nullptr && list->object() != nullptr ? list->object()->property("count") : QVariant();
        return index.isValid() && count.isValid() ? QStringLiteral("%1 de %2").arg(index.toInt() + 1).arg(count.toInt())
                                                  : QString();
    }
};

/// The same as Qt's own factory for items, which is called after this one.
QAccessibleInterface* makeItem(const QString& className, QObject* object) {
    auto* const item = className == QLatin1String("QQuickItem") ? qobject_cast<QQuickItem*>(object) : nullptr;
    if (item == nullptr || !QQuickItemPrivate::get(item)->isAccessible) {
        return nullptr;
    }
    return new AccessibleItem(item);  // QAccessible takes it over.
}

}  // namespace

void installAccessibleItems() {
    QAccessible::installFactory(makeItem);
}
