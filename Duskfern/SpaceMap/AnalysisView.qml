import QtQuick
import Duskfern.Engine
import Duskfern.SpaceMap
import Duskfern.Theme

/// The analysis of the chosen folder: its state, three numbers, and its files as a list and as a map.
Item {
    id: root

    required property ScanStore store

    function focusSearch() {
        search.forceActiveFocus(Qt.ShortcutFocusReason);
        search.selectAll();
    }

    /// The item that gets the focus when this is shown.
    function firstFocus(): Item {
        return files.firstFocus();
    }

    // The running count changes no more often than it can be read, because each text that is drawn holds up the scan.
    Timer {
        id: counter

        property real count: 0

        interval: 100
        repeat: true
        running: root.store.isScanning
        triggeredOnStart: true

        onTriggered: counter.count = root.store.scannedCount
    }

    Item {
        id: titleRow

        height: Math.max(overview.height, search.height) + Theme.inset(4)
        width: parent.width

        Column {
            id: overview

            anchors.bottom: parent.bottom
            anchors.left: parent.left
            anchors.right: search.left
            anchors.rightMargin: 16
            spacing: 3

            Label {
                font.bold: true
                font.pixelSize: Theme.compact ? Theme.body : Theme.title
                // Less than its implicit height where it shrinks.
                height: contentHeight
                text: "Tu almacenamiento, de un vistazo"
                width: parent.width
            }

            Label {
                color: Theme.secondary
                font.pixelSize: Theme.caption
                height: contentHeight
                text: StatusTexts.analysis(root.store.isScanning, counter.count, root.store.skippedCount)
                width: parent.width
            }
        }

        SearchField {
            id: search

            anchors.right: parent.right
            anchors.verticalCenter: overview.verticalCenter
            placeholderText: "Buscar archivos"
            value: root.store.search
            width: Math.max(230, implicitWidth)

            onEdited: text => root.store.search = text
        }
    }

    Row {
        id: metrics

        readonly property real cardWidth: (width - 2 * spacing) / 3

        anchors.top: titleRow.bottom
        anchors.topMargin: Theme.inset(14)
        spacing: 10
        width: parent.width

        MetricCard {
            accent: Theme.red
            icon: "externaldrive.fill"
            label: "ESPACIO ANALIZADO"
            value: Formatters.size(root.store.totalSize)
            width: metrics.cardWidth
        }

        MetricCard {
            accent: Theme.mint
            icon: "doc.on.doc.fill"
            label: "ARCHIVOS"
            value: Formatters.grouped(root.store.fileCount)
            width: metrics.cardWidth
        }

        MetricCard {
            accent: Theme.pink
            icon: "arrow.up.right.circle.fill"
            label: "ARCHIVO MAYOR"
            value: root.store.fileCount > 0 ? Formatters.size(root.store.largestSize) : "—"
            width: metrics.cardWidth
        }
    }

    SplitPane {
        anchors.bottom: parent.bottom
        anchors.top: metrics.bottom
        anchors.topMargin: Theme.inset(14)
        dividerName: "Ancho de la lista de archivos"
        gap: 12
        // At most as wide as a row is read.
        idealFirst: Math.max(430, Math.min(0.42 * room, 960))
        minimumFirst: Theme.compact ? 430 : 360
        minimumSecond: Theme.compact ? 300 : 430
        width: parent.width

        first: FileListView {
            id: files

            anchors.fill: parent
            store: root.store
        }
        second: BubbleMapView {
            anchors.fill: parent
            store: root.store

            onFocusLeft: files.firstFocus().focus = true
        }
    }
}
