#pragma once

#include <QtQml/qqmlregistration.h>
#include <QtCore/QObject>
#include <QtQuick/QQuickItem>
#include <QtQuick/QQuickWindow>

/// Watches the focus item of a window. Qt Quick gives the focus to no item when the focus item is destroyed or
/// disabled, and leaves it where it is when that item is hidden.
class FocusWatcher : public QObject {
    Q_OBJECT
    QML_ELEMENT

public:
    using QObject::QObject;

    /// The window to watch. May be set once.
    Q_PROPERTY(QQuickWindow* window READ window WRITE setWindow NOTIFY windowChanged REQUIRED)
    [[nodiscard]] QQuickWindow* window() const { return m_window; }
    void setWindow(QQuickWindow* window);
    Q_SIGNAL void windowChanged();

    /// Whether the last input was a key, not the pointer.
    Q_PROPERTY(bool keyboard READ keyboard NOTIFY keyboardChanged)
    [[nodiscard]] bool keyboard() const { return m_keyboard; }
    Q_SIGNAL void keyboardChanged();

    /// No visible and enabled item has the focus. Emitted asynchronously, if this is still so after the change that
    /// caused it.
    Q_SIGNAL void lost();

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void watchFocusItem();
    void queueCheck();
    void setKeyboard(bool keyboard);
    [[nodiscard]] bool isLost() const;

    QQuickWindow* m_window = nullptr;
    QMetaObject::Connection m_visibility;  ///< Connection to the focus item.
    bool m_keyboard = false;
    bool m_isCheckQueued = false;
};
