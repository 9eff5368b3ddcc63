import QtQuick

/// A button with a title and an optional symbol before it.
Pressable {
    id: root

    enum Kind {
        Plain,
        Prominent
    }

    property string symbol: ""
    property int kind: PushButton.Plain
    property bool large: false

    /// Whether the action is possible. Only this changes the look to disabled, not `enabled`, which is false while a
    /// dialog is open.
    property bool available: true
    property color tint: Theme.redFill
    property color titleColor: root.prominent ? Theme.onTint : Theme.primary

    readonly property bool prominent: root.kind === PushButton.Prominent
    readonly property color fill: root.prominent ? root.tint : Theme.tint(Theme.primary, 0.06)

    enabled: root.available
    focusPolicy: Qt.StrongFocus
    font.family: Theme.family
    font.pixelSize: root.large ? Theme.title3 : Theme.body
    implicitHeight: Math.ceil(contentItem.implicitHeight) + topPadding + bottomPadding
    implicitWidth: Math.ceil(contentItem.implicitWidth) + leftPadding + rightPadding
    horizontalPadding: root.large ? 22 : Theme.compact ? 8 : 12
    opacity: root.available ? 1 : 0.45
    verticalPadding: root.large ? 10 : 6

    background: Rectangle {
        border.color: root.prominent ? "transparent" : Theme.outline(0.1)
        border.width: root.prominent ? 0 : 1
        color: root.fill
        radius: 8

        Rectangle {
            anchors.fill: parent
            color: root.down || root.prominent || !Theme.dark ? Theme.darken : Theme.lighten
            opacity: root.down ? (root.prominent ? 0.22 : 0.08) : root.hovered ? (root.prominent ? 0.1 : 0.05) : 0
            radius: parent.radius
        }

        FocusRing {
            cornerRadius: 11
            shown: root.activeFocus
        }
    }
    // The ids in it keep it from being made later, but it is shown at once anyway.
    contentItem: Item { // qmllint disable deferred-property-id
        implicitHeight: title.implicitHeight
        implicitWidth: title.implicitWidth + (icon.visible ? icon.width + row.spacing : 0)

        Row {
            id: row

            anchors.centerIn: parent
            spacing: 8

            Symbol {
                id: icon

                anchors.verticalCenter: parent.verticalCenter
                color: root.titleColor
                name: root.symbol
                size: root.font.pixelSize * 1.1
                visible: root.symbol !== "" && !Theme.compact
            }

            Label {
                id: title

                Accessible.ignored: true
                color: root.titleColor
                font.pixelSize: root.font.pixelSize
                font.weight: root.prominent ? Font.Medium : Font.Normal
                text: root.text
                width: Math.min(implicitWidth, root.availableWidth - (icon.visible ? icon.width + row.spacing : 0))
            }
        }
    }
}
