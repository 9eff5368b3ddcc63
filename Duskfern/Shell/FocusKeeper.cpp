#include "Shell/FocusKeeper.h"

#include <QtGui/QKeyEvent>

#include <utility>

namespace {

bool isModifier(const QEvent& press) {
    const int key = dynamic_cast<const QKeyEvent&>(press).key();
    return (key >= Qt::Key_Shift && key <= Qt::Key_ScrollLock) || key == Qt::Key_AltGr || key == Qt::Key_unknown;
}

}  // namespace

void FocusKeeper::setWindow(QQuickWindow* window) {
    m_window = window;
    m_window->installEventFilter(this);
    connect(m_window, &QQuickWindow::activeFocusItemChanged, this, &FocusKeeper::follow);
    follow();
    Q_EMIT windowChanged();
}

void FocusKeeper::follow() {
    disconnect(m_visibility);
    if (const QQuickItem* const item = m_window->activeFocusItem()) {
        m_visibility = connect(item, &QQuickItem::visibleChanged, this, &FocusKeeper::checkSoon);
    }
    checkSoon();
}

void FocusKeeper::checkSoon() {
    if (isLost() && !std::exchange(m_isToBeChecked, true)) {
        QMetaObject::invokeMethod(
            this,
            [this] {
                m_isToBeChecked = false;
                if (isLost()) {
                    Q_EMIT lost();
                }
            },
            Qt::QueuedConnection);
    }
}

/// A focus scope has the focus itself only where nothing in it has it, unless it is one that Tab stops at.
bool FocusKeeper::isLost() const {
    const QQuickItem* const item = m_window->activeFocusItem();
    return item == nullptr || !item->isVisible() || !item->isEnabled() ||
           (item->isFocusScope() && !item->activeFocusOnTab());
}

void FocusKeeper::setKeyboard(bool keyboard) {
    if (std::exchange(m_keyboard, keyboard) != keyboard) {
        Q_EMIT keyboardChanged();
    }
}

bool FocusKeeper::eventFilter(QObject* watched, QEvent* event) {
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
