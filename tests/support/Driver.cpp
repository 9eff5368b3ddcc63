#include "support/Driver.h"

#include <QtGui/QKeySequence>
#include <QtQuick/QQuickItem>
#include <QtTest/QTest>

#include <algorithm>
#include <iterator>

namespace {

/// All that can be read, in the order in which it is.
std::vector<QAccessibleInterface*> nodesOf(QAccessibleInterface* node) {
    std::vector<QAccessibleInterface*> all;
    if (node != nullptr && node->isValid() && !node->state().invisible) {
        all.push_back(node);
        for (int i = 0; i < node->childCount(); ++i) {
            const auto below = nodesOf(node->child(i));
            all.insert(all.end(), below.begin(), below.end());
        }
    }
    return all;
}

}  // namespace

QAccessibleInterface* Driver::find(const std::string& name, Role role) const {
    for (QAccessibleInterface* const node : nodesOf(QAccessible::queryAccessibleInterface(&m_window))) {
        const std::string text = node->text(QAccessible::Name).toStdString();
        // What the sidebar lists is pressed like a button.
        const bool isTab = role == QAccessible::Button && node->role() == QAccessible::PageTab;
        if ((node->role() == role || isTab) && (text == name || text.starts_with(name + ", "))) {
            return node;
        }
    }
    return nullptr;
}

std::vector<std::string> Driver::names(Role role, QAccessible::Text kind) const {
    std::vector<std::string> all;
    for (QAccessibleInterface* const node : nodesOf(QAccessible::queryAccessibleInterface(&m_window))) {
        if (node->role() == role && !node->state().disabled) {
            all.push_back(node->text(kind).toStdString());
        }
    }
    return all;
}

QAccessible::State Driver::state(const std::string& name, Role role) const {
    QAccessible::State missing;
    missing.disabled = true;
    QAccessibleInterface* const node = find(name, role);
    return node == nullptr ? missing : node->state();
}

std::vector<const QQuickItem*> Driver::items() const {
    std::vector<const QQuickItem*> all{m_window.contentItem()};
    for (std::size_t i = 0; i < all.size(); ++i) {
        const QList<QQuickItem*> children = all[i]->childItems();
        std::copy_if(children.begin(), children.end(), std::back_inserter(all),
                     [](const QQuickItem* child) { return child->isVisible(); });
    }
    return all;
}

QPoint Driver::middleOf(const std::string& name, Role role) const {
    return m_window.mapFromGlobal(find(name, role)->rect().center());
}

bool Driver::press(const std::string& name, Role role) const {
    const bool isThere = waitFor(name, role);
    if (isThere) {
        find(name, role)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        QCoreApplication::processEvents();
    }
    return isThere;
}

bool Driver::click(const std::string& name, Role role, int times) const {
    const bool isThere = waitFor(name, role);
    if (isThere) {
        const QPoint middle = middleOf(name, role);
        QTest::mouseClick(&m_window, Qt::LeftButton, Qt::NoModifier, middle);
        if (times == 2) {
            QTest::mouseDClick(&m_window, Qt::LeftButton, Qt::NoModifier, middle);
        }
    }
    return isThere;
}

void Driver::type(const std::string& text) const {
    for (const char character : text) {
        QTest::keyClick(&m_window, character);
    }
}

void Driver::key(const char* keys) const {
    for (const QString& name : QString::fromLatin1(keys).split(u' ')) {
        const QKeyCombination key = QKeySequence::fromString(name)[0];
        QTest::keyClick(&m_window, key.key(), key.keyboardModifiers());
        QCoreApplication::processEvents();
    }
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
        key("Tab");
    }
    return false;
}
