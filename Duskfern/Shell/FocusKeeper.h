#pragma once

#include <QtQml/qqmlregistration.h>
#include <QtCore/QObject>
#include <QtQuick/QQuickItem>
#include <QtQuick/QQuickWindow>

/// Watches what the keyboard acts on in a window. Qt Quick takes the focus from an item that goes away or is disabled
/// and gives it to nothing, and leaves it with an item that is hidden.
class FocusKeeper : public QObject {
    Q_OBJECT
    QML_ELEMENT

public:
    using QObject::QObject;

    /// Set once.
    Q_PROPERTY(QQuickWindow* window READ window WRITE setWindow NOTIFY windowChanged REQUIRED)
    [[nodiscard]] QQuickWindow* window() const { return m_window; }
    void setWindow(QQuickWindow* window);
    Q_SIGNAL void windowChanged();

    /// Whether a key was used last rather than the pointer.
    Q_PROPERTY(bool keyboard READ keyboard NOTIFY keyboardChanged)
    [[nodiscard]] bool keyboard() const { return m_keyboard; }
    Q_SIGNAL void keyboardChanged();

    /// Nothing that is shown and enabled has the focus. Given once the change that led to this is complete, if nothing
    /// has got it by then.
    Q_SIGNAL void lost();

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void follow();
    void checkSoon();
    void setKeyboard(bool keyboard);
    [[nodiscard]] bool isLost() const;

    QQuickWindow* m_window = nullptr;
    QMetaObject::Connection m_visibility;  ///< Of the item that has the focus.
    bool m_keyboard = false;
    bool m_isToBeChecked = false;
};
