#include "Shell/FocusWatcher.h"

#include <QtGui/QKeyEvent>

#include <utility>

namespace {

bool isModifier(const QEvent& press) {
    const int key = dynamic_cast<const QKeyEvent&>(press).key();
    return (key >= Qt::Key_Shift && key <= Qt::Key_ScrollLock) || key == Qt::Key_AltGr || key == Qt::Key_unknown;
}

bool isInMenu(const QQuickItem* item) {
    while (item != nullptr && !item->inherits("QQuickPopupItem")) {
        item = item->parentItem();
    }
    return item != nullptr;
}

}  // namespace

void FocusWatcher::setWindow(QQuickWindow* window) {
    m_window = window;
    m_window->installEventFilter(this);
    connect(m_window, &QQuickWindow::activeFocusItemChanged, this, &FocusWatcher::watchFocusItem);
    watchFocusItem();
    Q_EMIT windowChanged();
}

void FocusWatcher::watchFocusItem() {
    disconnect(m_visibility);
    if (const QQuickItem* const item = m_window->activeFocusItem()) {
        m_visibility = connect(item, &QQuickItem::visibleChanged, this, &FocusWatcher::queueCheck);
    }
    queueCheck();
}

void FocusWatcher::queueCheck() {
    if (isLost() && !std::exchange(m_isCheckQueued, true)) {
        QMetaObject::invokeMethod(
            this,
            [this] {
                m_isCheckQueued = false;
                if (isLost()) {
                    Q_EMIT lost();
                }
            },
            Qt::QueuedConnection);
    }
}

/// A focus scope is the focus item only if nothing inside it has the focus, unless it is itself a Tab stop, or a menu
/// that was opened by the pointer.
bool FocusWatcher::isLost() const {
    const QQuickItem* const item = m_window->activeFocusItem();
    return item == nullptr || !item->isVisible() || !item->isEnabled() ||
           (item->isFocusScope() && !item->activeFocusOnTab() && !isInMenu(item));
}

void FocusWatcher::setKeyboard(bool keyboard) {
    if (std::exchange(m_keyboard, keyboard) != keyboard) {
        Q_EMIT keyboardChanged();
    }
}

bool FocusWatcher::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
        case QEvent::KeyPress:
            setKeyboard(m_keyboard || !isModifier(*event));
            break;
        case QEvent::MouseButtonPress:
        case QEvent::TouchBegin:
        case QEvent::TabletPress:
            setKeyboard(false);
            break;
        default:
            break;
    }
    return QObject::eventFilter(watched, event);
}
