#pragma once

#include "support/WaitUntil.h"

#include <QtGui/QAccessible>
#include <QtQuick/QQuickWindow>

#include <string>
#include <vector>

/// Uses a window as a person with a screen reader does: finds things by the text they show and presses them. What is
/// waited for may come as late as `waitUntil` allows.
class Driver {
public:
    using Role = QAccessible::Role;

    explicit Driver(QQuickWindow& window) : m_window(window) { QAccessible::setActive(true); }

    /// The visible thing whose name is `name`, or begins with `name` and a comma; null if there is none now.
    [[nodiscard]] QAccessibleInterface* find(const std::string& name, Role role) const;

    /// Whether `name` can be read anywhere, now or after some time.
    [[nodiscard]] bool shows(const std::string& name, Role role = QAccessible::StaticText) const {
        return find(name, role);
    }
    [[nodiscard]] bool waitFor(const std::string& name, Role role = QAccessible::StaticText) const {
        return waitUntil([&] { return shows(name, role); });
    }

    /// Whether no dialog is shown, now or after some time.
    [[nodiscard]] bool waitForNoDialog() const {
        return waitUntil([&] { return names(QAccessible::Dialog).empty(); });
    }

    /// Every visible and enabled name, or description, of a role, in the order in which they are read.
    [[nodiscard]] std::vector<std::string> names(Role role, QAccessible::Text kind = QAccessible::Name) const;

    /// Disabled, and nothing else, if it is not there.
    [[nodiscard]] QAccessible::State state(const std::string& name, Role role) const;
    [[nodiscard]] bool isEnabled(const std::string& name, Role role = QAccessible::Button) const {
        return !state(name, role).disabled;
    }

    /// Every visible item of the window, also what is not read: first those that hold others.
    [[nodiscard]] std::vector<const QQuickItem*> items() const;

    /// The place in the window of the middle of what is shown.
    [[nodiscard]] QPoint middleOf(const std::string& name, Role role) const;

    /// Presses it the way assistive technology does; false if it does not come.
    bool press(const std::string& name, Role role = QAccessible::Button) const;

    /// Clicks with the pointer in the middle of it; twice for a double click.
    bool click(const std::string& name, Role role, int times = 1) const;

    /// Types text, or presses keys one after the other, where the focus is: "Tab", "Ctrl+O Down Return".
    void type(const std::string& text) const;
    void key(const char* keys) const;

    /// The name of what the keyboard acts on; empty if that is nothing that is shown and enabled.
    [[nodiscard]] std::string focused() const;

    /// Goes on from control to control until the keyboard acts on `name`; false if it comes to nothing, or never there.
    bool tabTo(const std::string& name) const;

private:
    QQuickWindow& m_window;
};
