#pragma once

#include <QtCore/QString>
#include <QtGui/QAccessible>
#include <QtQuick/QQuickWindow>

#include <functional>
#include <string>
#include <vector>

/// Uses a window as a person with a screen reader does: finds things by the text they show and presses them.
class Driver {
public:
    explicit Driver(QQuickWindow& window);

    /// Runs the event loop until `condition` holds; false if it does not within ten seconds.
    static bool waitUntil(const std::function<bool()>& condition);

    /// The visible thing whose name is `name`, or begins with `name` and a comma; null if there is none now.
    [[nodiscard]] QAccessibleInterface* find(const QString& name, QAccessible::Role role) const;

    /// Whether `name` can be read anywhere, now or within ten seconds.
    [[nodiscard]] bool shows(const QString& name, QAccessible::Role role = QAccessible::StaticText) const;
    [[nodiscard]] bool waitFor(const QString& name, QAccessible::Role role = QAccessible::StaticText) const;

    /// Every visible name, or description, of a role, in the order in which they are read.
    [[nodiscard]] std::vector<std::string> names(QAccessible::Role role) const;
    [[nodiscard]] std::vector<std::string> descriptions(QAccessible::Role role) const;

    [[nodiscard]] bool isEnabled(const QString& name, QAccessible::Role role = QAccessible::Button) const;
    [[nodiscard]] bool isSelected(const QString& name, QAccessible::Role role) const;

    /// Presses it the way assistive technology does; false if it is not there within ten seconds.
    bool press(const QString& name, QAccessible::Role role = QAccessible::Button) const;

    /// Clicks with the pointer in the middle of it.
    bool click(const QString& name, QAccessible::Role role) const;

    /// Types text, or presses one key, where the focus is.
    void type(const QString& text) const;
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const;

    /// The name of what the keyboard acts on; empty if that is nothing that is shown and enabled.
    [[nodiscard]] std::string focused() const;

    /// Goes on from control to control until the keyboard acts on `name`; false if it comes to nothing, or never there.
    bool tabTo(const std::string& name) const;

    /// Writes what the window shows into a PNG file.
    [[nodiscard]] bool save(const QString& file) const;

private:
    [[nodiscard]] std::vector<std::string> texts(QAccessible::Role role, QAccessible::Text kind) const;

    QQuickWindow& m_window;
};
