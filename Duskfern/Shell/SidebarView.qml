pragma ComponentBehavior: Bound

import QtQuick
import Duskfern.Engine
import Duskfern.Theme

/// The sidebar: the name, the screens, the category filter, and the privacy note.
Rectangle {
    id: root

    required property ScanStore store

    component SectionLabel: Label {
        color: Theme.secondary
        font.letterSpacing: 2
        font.pixelSize: Theme.fixed9
        font.weight: Font.DemiBold
        leftPadding: 16
        rightPadding: 16
        topPadding: 8
    }

    component ModeRow: SidebarRow {
        required property int mode

        current: root.store.mode === mode
        highlight: Theme.tint(Theme.red, 0.2)
        width: parent.width

        onClicked: root.store.mode = mode
    }

    color: Theme.sidebar

    SidebarBrand {
        id: brand

        width: parent.width
    }

    Column {
        id: screens

        anchors.top: brand.bottom
        width: parent.width

        SectionLabel {
            text: "HERRAMIENTAS"
        }

        Column {
            padding: 8
            spacing: 4
            width: parent.width

            Column {
                spacing: 4
                width: parent.width - 16

                ModeRow {
                    mode: Mode.Home
                    symbol: "house.fill"
                    text: "Inicio"
                }

                ModeRow {
                    mode: Mode.Space
                    symbol: "circle.grid.2x2.fill"
                    text: "Mapa de espacio"
                }

                ModeRow {
                    mode: Mode.Junk
                    symbol: "sparkles"
                    text: "Limpiar basura"
                }
            }
        }

        SectionLabel {
            text: "EXPLORAR"
        }
    }

    ListView {
        id: categories

        anchors.bottom: footer.top
        anchors.left: parent.left
        anchors.leftMargin: 8
        anchors.right: parent.right
        anchors.rightMargin: 8
        anchors.top: screens.bottom
        bottomMargin: 8
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        currentIndex: -1
        interactive: contentHeight + topMargin + bottomMargin > height
        keyNavigationEnabled: false
        model: FileCategories.count
        spacing: 4
        topMargin: 8

        delegate: SidebarRow {
            required property int index

            current: root.store.category === index // qmllint disable type
            highlight: Theme.tint(Theme.purple, 0.18)
            symbol: FileCategories.icon(index)
            text: FileCategories.title(index)
            width: ListView.view.width

            onActiveFocusChanged: {
                if (activeFocus) {
                    categories.positionViewAtIndex(index, ListView.Contain);
                }
            }
            onClicked: root.store.category = index
        }

        ScrollThumb {
            view: categories
        }
    }

    SidebarPromise {
        id: footer

        anchors.bottom: parent.bottom
        anchors.left: parent.left
        anchors.margins: 12
        anchors.right: parent.right
    }
}
