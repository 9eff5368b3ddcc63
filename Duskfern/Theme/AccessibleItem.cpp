#include "Theme/AccessibleItem.h"

#include <QtQuick/private/qaccessiblequickitem_p.h>
#include <QtQuick/private/qquickitem_p.h>

namespace {

class AccessibleItem final : public QAccessibleQuickItem {
public:
    using QAccessibleQuickItem::QAccessibleQuickItem;

    [[nodiscard]] QAccessible::State state() const override {
        QAccessible::State state = QAccessibleQuickItem::state();
        state.disabled = !item()->isEnabled();
        return state;
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
