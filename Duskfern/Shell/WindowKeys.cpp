#include "Shell/WindowKeys.h"

#include <QtGui/QKeyEvent>

#include <algorithm>
#include <iterator>

namespace {

enum class When { notBlocked, always };

struct WindowKey {
    Qt::Key key = Qt::Key_unknown;
    Qt::KeyboardModifier modifier = Qt::NoModifier;
    void (WindowKeys::*command)() = nullptr;
    When when = When::notBlocked;
};

constexpr WindowKey windowKeys[] = {
    {Qt::Key_Q, Qt::ControlModifier, &WindowKeys::quit, When::always},
    {Qt::Key_O, Qt::ControlModifier, &WindowKeys::chooseFolder},
    {Qt::Key_R, Qt::ControlModifier, &WindowKeys::analyse},
    {Qt::Key_F, Qt::ControlModifier, &WindowKeys::search},
    {Qt::Key_1, Qt::ControlModifier, &WindowKeys::showHome},
    {Qt::Key_2, Qt::ControlModifier, &WindowKeys::showSpace},
    {Qt::Key_3, Qt::ControlModifier, &WindowKeys::showJunk},
    {Qt::Key_A, Qt::AltModifier, &WindowKeys::menu},
    {Qt::Key_F10, Qt::NoModifier, &WindowKeys::menu},
};

/// The modifiers that count: Shift is ignored for digits, because some layouts need it to type one.
Qt::KeyboardModifiers modifiersOf(const QKeyEvent& event) {
    Qt::KeyboardModifiers ignored = Qt::KeypadModifier | Qt::GroupSwitchModifier;
    if (event.key() >= Qt::Key_0 && event.key() <= Qt::Key_9) {
        ignored |= Qt::ShiftModifier;
    }
    return event.modifiers() & ~ignored;
}

}  // namespace

void WindowKeys::setWindow(QQuickWindow* window) {
    m_window = window;
    m_window->installEventFilter(this);
    Q_EMIT windowChanged();
}

bool WindowKeys::eventFilter(QObject* watched, QEvent* event) {
    const auto* const press = event->type() == QEvent::KeyPress ? dynamic_cast<QKeyEvent*>(event) : nullptr;
    if (press == nullptr) {
        return QObject::eventFilter(watched, event);
    }
    const auto* const row = std::find_if(std::begin(windowKeys), std::end(windowKeys), [&](const WindowKey& candidate) {
        return candidate.key == press->key() && candidate.modifier == modifiersOf(*press);
    });
    if (row == std::end(windowKeys) || (m_blocked && row->when == When::notBlocked)) {
        return false;
    }
    if (!press->isAutoRepeat()) {
        (this->*row->command)();
    }
    return true;
}
