#pragma once

#include <QtQml/qqmlregistration.h>
#include <QtCore/QObject>
#include <QtQuick/QQuickWindow>

/// The keys that mean the same wherever the keyboard's focus is. They are taken from the window itself, because those
/// that Qt Quick looks for do not come through an open menu or a dialog in Qt 6.4.
class WindowKeys : public QObject {
    Q_OBJECT
    QML_ELEMENT

public:
    using QObject::QObject;

    /// Set once.
    Q_PROPERTY(QQuickWindow* window READ window WRITE setWindow NOTIFY windowChanged REQUIRED)
    [[nodiscard]] QQuickWindow* window() const { return m_window; }
    void setWindow(QQuickWindow* window);
    Q_SIGNAL void windowChanged();

    /// While this is set only `quit` is given.
    Q_PROPERTY(bool blocked MEMBER m_blocked NOTIFY blockedChanged)
    Q_SIGNAL void blockedChanged();

    /// What the keys ask for. A key that is held down asks once.
    Q_SIGNAL void quit();
    Q_SIGNAL void chooseFolder();
    Q_SIGNAL void analyse();
    Q_SIGNAL void search();
    Q_SIGNAL void showHome();
    Q_SIGNAL void showSpace();
    Q_SIGNAL void showJunk();
    Q_SIGNAL void menu();

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QQuickWindow* m_window = nullptr;
    bool m_blocked = false;
};
