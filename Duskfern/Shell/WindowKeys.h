#pragma once

#include <QtQml/qqmlregistration.h>
#include <QtCore/QObject>
#include <QtQuick/QQuickWindow>

/// Key combinations that work wherever the focus is. Taken from the window by an event filter, because Qt Quick's
/// Shortcut does not work with an open menu or dialog in Qt 6.4.
class WindowKeys : public QObject {
    Q_OBJECT
    QML_ELEMENT

public:
    using QObject::QObject;

    /// The window to watch. May be set once.
    Q_PROPERTY(QQuickWindow* window READ window WRITE setWindow NOTIFY windowChanged REQUIRED)
    [[nodiscard]] QQuickWindow* window() const { return m_window; }
    void setWindow(QQuickWindow* window);
    Q_SIGNAL void windowChanged();

    /// While set, only `quit` is emitted.
    Q_PROPERTY(bool blocked MEMBER m_blocked NOTIFY blockedChanged)
    Q_SIGNAL void blockedChanged();

    /// One signal per command. Key repeats are ignored.
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
