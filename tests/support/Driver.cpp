#include "support/Driver.h"

#include <QtCore/QDeadlineTimer>
#include <QtCore/QElapsedTimer>
#include <QtGui/QImage>
#include <QtQuick/QQuickItem>
#include <QtTest/QTest>

namespace {

void visit(QAccessibleInterface* node, const std::function<bool(QAccessibleInterface*)>& visitor, bool& done) {
    if (node == nullptr || !node->isValid() || node->state().invisible) {
        return;
    }
    done = done || visitor(node);
    for (int i = 0; !done && i < node->childCount(); ++i) {
        visit(node->child(i), visitor, done);
    }
}

}  // namespace

Driver::Driver(QQuickWindow& window) : m_window(window) {
    QAccessible::setActive(true);
}

bool Driver::waitUntil(const std::function<bool()>& condition) {
    return QTest::qWaitFor(condition, 10'000);
}

QAccessibleInterface* Driver::find(const QString& name, QAccessible::Role role) const {
    QAccessibleInterface* found = nullptr;
    bool done = false;
    visit(
        QAccessible::queryAccessibleInterface(&m_window),
        [&](QAccessibleInterface* node) {
            const QString text = node->text(QAccessible::Name);
            if (node->role() == role && (text == name || text.startsWith(name + QLatin1String(", ")))) {
                found = node;
            }
            return found != nullptr;
        },
        done);
    return found;
}

bool Driver::shows(const QString& name, QAccessible::Role role) const {
    return find(name, role) != nullptr;
}

bool Driver::waitFor(const QString& name, QAccessible::Role role) const {
    return waitUntil([&] { return shows(name, role); });
}

std::vector<std::string> Driver::texts(QAccessible::Role role, QAccessible::Text kind) const {
    std::vector<std::string> all;
    bool done = false;
    visit(
        QAccessible::queryAccessibleInterface(&m_window),
        [&](QAccessibleInterface* node) {
            if (node->role() == role) {
                all.push_back(node->text(kind).toStdString());
            }
            return false;
        },
        done);
    return all;
}

std::vector<std::string> Driver::names(QAccessible::Role role) const {
    return texts(role, QAccessible::Name);
}

std::vector<std::string> Driver::descriptions(QAccessible::Role role) const {
    return texts(role, QAccessible::Description);
}

bool Driver::isEnabled(const QString& name, QAccessible::Role role) const {
    QAccessibleInterface* node = find(name, role);
    return node != nullptr && !node->state().disabled;
}

bool Driver::isSelected(const QString& name, QAccessible::Role role) const {
    QAccessibleInterface* node = find(name, role);
    return node != nullptr && node->state().selected;
}

bool Driver::press(const QString& name, QAccessible::Role role) const {
    if (!waitFor(name, role)) {
        return false;
    }
    find(name, role)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QCoreApplication::processEvents();
    return true;
}

bool Driver::click(const QString& name, QAccessible::Role role) const {
    if (!waitFor(name, role)) {
        return false;
    }
    const QPoint middle = m_window.mapFromGlobal(find(name, role)->rect().center());
    QTest::mouseClick(&m_window, Qt::LeftButton, Qt::NoModifier, middle);
    return true;
}

void Driver::type(const QString& text) const {
    for (const QChar character : text) {
        QTest::keyClick(&m_window, character.toLatin1());
    }
}

void Driver::key(Qt::Key key, Qt::KeyboardModifiers modifiers) const {
    QTest::keyClick(&m_window, key, modifiers);
    QCoreApplication::processEvents();
}

std::string Driver::focused() const {
    QQuickItem* const item = m_window.activeFocusItem();
    if (item == nullptr || !item->isVisible() || !item->isEnabled()) {
        return {};
    }
    QAccessibleInterface* const node = QAccessible::queryAccessibleInterface(item);
    return node == nullptr ? std::string() : node->text(QAccessible::Name).toStdString();
}

bool Driver::tabTo(const std::string& name) const {
    for (int step = 0; step < 60 && !focused().empty(); ++step) {
        if (focused() == name || focused().starts_with(name + ", ")) {
            return true;
        }
        key(Qt::Key_Tab);
    }
    return false;
}

bool Driver::save(const QString& file) const {
    return m_window.grabWindow().save(file);
}
