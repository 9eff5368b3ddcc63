import QtQuick
import Duskfern.Engine
import Duskfern.Theme

/// Shown by the space map before a folder is chosen.
Item {
    id: root

    required property ScanStore store

    /// The item that gets the focus when this is shown.
    function firstFocus(): Item {
        return choose;
    }

    Column {
        anchors.centerIn: parent
        spacing: 18
        width: Math.min(parent.width - 32, 620)

        Item {
            anchors.horizontalCenter: parent.horizontalCenter
            height: 120
            width: 120

            AppIcon {
                Accessible.ignored: true
                anchors.centerIn: parent
                height: 120 + 2 * shadow
                radius: 26
                shadow: 18
                width: 120 + 2 * shadow
            }
        }

        Label {
            font.bold: true
            font.pixelSize: Theme.compact ? Theme.title : Theme.largeTitle
            horizontalAlignment: Text.AlignHCenter
            text: "Descubre qué ocupa tu Mac"
            width: parent.width
            wrapMode: Text.Wrap
        }

        Label {
            anchors.horizontalCenter: parent.horizontalCenter
            color: Theme.secondary
            horizontalAlignment: Text.AlignHCenter
            lineHeight: 1.15
            text: "Elige una carpeta o disco. Duskfern lo analizará localmente y mostrará los archivos más grandes en un mapa visual."
            width: Math.min(parent.width, 520)
            wrapMode: Text.Wrap
        }

        PushButton {
            id: choose

            anchors.horizontalCenter: parent.horizontalCenter
            kind: PushButton.Prominent
            large: true
            text: "Elegir carpeta…"

            onClicked: root.store.chooseFolder()
        }
    }
}
