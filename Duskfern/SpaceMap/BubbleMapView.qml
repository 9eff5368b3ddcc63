pragma ComponentBehavior: Bound

import QtQuick
import Duskfern.Engine
import Duskfern.SpaceMap
import Duskfern.Theme

/// The largest files that match the filter, as circles.
Card {
    id: root

    required property ScanStore store

    /// The file of the focused bubble is not in the map any more.
    signal focusLeft

    fillOpacity: 0.035
    radius: 14

    BubbleMapModel {
        id: bubbles

        area: Qt.size(area.width, area.height)
        store: root.store

        // Changes only the focus within this scope: the active focus may be elsewhere in the window.
        onFocusedMoved: {
            if (bubbles.focused < 0) {
                root.focusLeft();
            } else {
                buttons.itemAt(bubbles.focused).focus = true;
            }
        }
    }

    CardHeader {
        id: header

        subtitle: "Cuanto mayor la burbuja, más espacio ocupa"
        title: "Vista visual"
        width: parent.width
    }

    Item {
        id: area

        anchors.bottom: parent.bottom
        anchors.top: header.bottom
        Accessible.name: header.title
        Accessible.role: Accessible.Grouping
        clip: true
        width: parent.width

        BubbleMapCanvas {
            id: canvas

            Accessible.ignored: true
            anchors.fill: parent
            background: Theme.tint(Theme.purple, 0.025)
            bodyFont.family: Theme.family
            bodyFont.pixelSize: Theme.body
            cornerRadius: 14
            from: Theme.tint(Theme.teal, 0.95)
            hovered: tip.bubble?.index ?? -1
            model: bubbles
            sizeFont.bold: true
            sizeFont.family: Theme.family
            sizeFont.pixelSize: Theme.caption2
            to: Theme.tint(Theme.purple, 0.82)
        }

        Column {
            anchors.centerIn: parent
            spacing: 8
            visible: bubbles.count === 0

            Symbol {
                anchors.horizontalCenter: parent.horizontalCenter
                color: Theme.secondary
                name: "circle.grid.cross"
                size: Theme.largeTitle
            }

            Label {
                anchors.horizontalCenter: parent.horizontalCenter
                color: Theme.secondary
                text: root.store.isScanning ? "Calculando el mapa…" : "No hay archivos que mostrar"
            }
        }

        // A single tip for all bubbles, because creating one takes longer than creating a bubble.
        HoverTip {
            id: tip

            property BubbleButton bubble: null

            // The linter takes either for no item.
            parent: tip.bubble ?? area // qmllint disable type
            text: tip.bubble?.path ?? ""
            visible: tip.bubble !== null
        }

        Repeater {
            id: buttons

            model: bubbles

            delegate: BubbleButton {
                id: bubble

                // The others are reached by the arrow keys.
                focusPolicy: index === bubbles.tabStop || activeFocus ? Qt.StrongFocus : Qt.ClickFocus

                Keys.onPressed: event => {
                    const next = bubbles.bubbleAfter(event.key, index);
                    if (next >= 0) {
                        buttons.itemAt(next).forceActiveFocus(Qt.TabFocusReason);
                        event.accepted = true;
                    }
                }
                onActiveFocusChanged: canvas.focused = activeFocus ? index : canvas.focused === index ? -1 : canvas.focused
                onFocusChanged: bubbles.setFocus(index, focus)
                onClicked: root.store.selectRow(index)
                onHoveredChanged: tip.bubble = hovered ? bubble : tip.bubble === bubble ? null : tip.bubble
                onPressedChanged: canvas.pressed = pressed
                onRevealed: root.store.revealSelected()
            }
        }
    }
}
