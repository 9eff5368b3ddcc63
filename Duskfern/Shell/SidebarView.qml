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

        SidebarList {
            Accessible.name: "Herramientas"
            chosen: root.store.mode
            height: contentHeight + topMargin + bottomMargin
            highlight: Theme.tint(Theme.red, 0.2)
            symbols: ["house.fill", "circle.grid.2x2.fill", "sparkles"]
            titles: ["Inicio", "Mapa de espacio", "Limpiar basura"]
            width: parent.width

            // The rows are in the order of the modes.
            onPicked: row => root.store.mode = row
        }

        SectionLabel {
            text: "EXPLORAR"
        }
    }

    SidebarList {
        id: categories

        Accessible.name: "Explorar"
        anchors.bottom: footer.visible ? footer.top : parent.bottom
        anchors.top: screens.bottom
        // The linter of Qt 6.4 knows neither the enumeration of another module nor lists of texts from C++.
        chosen: root.store.category // qmllint disable type
        highlight: Theme.tint(Theme.purple, 0.18)
        symbols: FileCategories.icons // qmllint disable type
        titles: FileCategories.titles // qmllint disable type
        width: parent.width

        onPicked: row => root.store.category = row
    }

    SidebarPromise {
        id: footer

        anchors.bottom: parent.bottom
        anchors.left: parent.left
        anchors.margins: Theme.inset(12)
        anchors.right: parent.right
        // Yields to the categories, of which at least four are seen.
        visible: root.height - screens.y - screens.height - height - 2 * anchors.margins > 4 * (categories.rowHeight + categories.spacing) + categories.topMargin
    }
}
