import QtQuick
import QtQuick.Templates as T
import Duskfern.Theme

/// A button of the sidebar. The whole row is clickable.
T.AbstractButton {
    id: root

    required property string symbol
    required property color highlight
    required property bool current

    /// Called for a click, for keys and by assistive technologies.
    function press() {
        if (root.enabled) {
            root.clicked();
        }
    }

    Accessible.checkable: true
    Accessible.checked: root.current
    Accessible.name: root.text
    Accessible.role: Accessible.Button
    Accessible.selectable: true
    Accessible.selected: root.current
    focusPolicy: Qt.TabFocus
    horizontalPadding: 10
    hoverEnabled: true
    implicitHeight: Math.ceil(contentItem.implicitHeight) + topPadding + bottomPadding
    verticalPadding: 8

    Accessible.onPressAction: root.press()
    Keys.onEnterPressed: root.press()
    Keys.onReturnPressed: root.press()

    background: Rectangle {
        color: root.current ? root.highlight : Theme.tint(Theme.primary, root.down ? 0.1 : root.hovered ? 0.05 : 0)
        radius: 8

        FocusRing {
            cornerRadius: 8
            inset: 0
            shown: root.activeFocus
        }
    }
    contentItem: Item { // qmllint disable deferred-property-id
        implicitHeight: title.implicitHeight

        Symbol {
            id: icon

            anchors.verticalCenter: parent.verticalCenter
            name: root.symbol
        }

        Label {
            id: title

            Accessible.ignored: true
            anchors.left: icon.right
            anchors.leftMargin: 10
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            text: root.text
        }
    }
}
