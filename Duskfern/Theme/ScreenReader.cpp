#include "Theme/ScreenReader.h"

#include <QtGui/QAccessible>

#include <chrono>

void ScreenReader::moveFocus(QQuickItem* row) {
    if (row == nullptr || !QAccessible::isActive()) {
        return;
    }
    QAccessibleEvent selection(row, QAccessible::Selection);
    QAccessible::updateAccessibility(&selection);
    QAccessibleEvent focus(row, QAccessible::Focus);
    QAccessible::updateAccessibility(&focus);
}

Announcer::Announcer(QQuickItem* parent) : QQuickItem(parent) {
    m_clear.setSingleShot(true);
    m_clear.setInterval(std::chrono::seconds(5));
    connect(&m_clear, &QTimer::timeout, this, [this] { setText({}); });
}

void Announcer::announce(const QString& text) {
    if (!QAccessible::isActive()) {
        return;
    }
    setText(text);
    m_clear.start();
#if QT_VERSION >= QT_VERSION_CHECK(6, 8, 0)
    QAccessibleAnnouncementEvent event(this, text);
#else
    // A notification that appears is read aloud.
    QAccessibleEvent event(this, QAccessible::ObjectShow);
#endif
    QAccessible::updateAccessibility(&event);
}

void Announcer::setText(const QString& text) {
    if (m_text != text) {
        m_text = text;
        Q_EMIT textChanged();
    }
}
