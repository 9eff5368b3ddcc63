import QtQuick
import Duskfern.Engine
import Duskfern.SpaceMap
import Duskfern.Theme

/// The sidebar beside the screen of the current mode.
SplitPane {
    id: root

    required property ScanStore store

    function focusSearch() {
        root.store.mode = Mode.Space;
        (spaceMap.item as DashboardView).focusSearch();
    }

    /// Does nothing unless the screen that shows the selection is in view.
    function moveSelectedToTrash() {
        if (root.store.mode === Mode.Space) {
            root.store.moveSelectedToTrash();
        }
    }

    hairline: true
    idealFirst: 200
    maximumFirst: 230
    minimumFirst: 180
    minimumSecond: 600

    first: SidebarView {
        anchors.fill: parent
        store: root.store
    }
    second: Loader {
        id: spaceMap

        readonly property bool chosen: root.store.mode === Mode.Space

        active: spaceMap.chosen || spaceMap.item !== null
        anchors.fill: parent
        visible: spaceMap.chosen

        // Bound components cannot be loaded in Qt 6.4.
        sourceComponent: DashboardView {
            store: root.store // qmllint disable unqualified
        }
    }
}
