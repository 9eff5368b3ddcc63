import QtQuick
import Duskfern.Engine
import Duskfern.Shell
import Duskfern.Theme

/// The sidebar and the screen of the current mode.
SplitPane {
    id: root

    required property ScanStore store
    required property ScreenStores screens

    /// The loader of the current screen. Only this one is enabled.
    property Loader shown: visit

    function focusSearch() {
        root.store.mode = Mode.Space;
        // The linter takes what a loader holds for a mere QtObject.
        spaceMap.item.focusSearch(); // qmllint disable type
    }

    /// Shows a screen and moves the focus into it, also if it is shown already.
    function show(mode: int) {
        root.store.mode = mode;
        root.takeFocus();
    }

    /// Moves the focus to the first item to act on in the current screen.
    function takeFocus() {
        if (root.enabled) {
            // Likewise.
            root.shown.item.firstFocus().forceActiveFocus(); // qmllint disable type
        }
    }

    // Screens are given as files, because the type of an inline one would be loaded at launch.
    function updateScreen() {
        if (root.store.mode === Mode.Space && spaceMap.item === null) {
            spaceMap.setSource("qrc:/qt/qml/Duskfern/SpaceMap/DashboardView.qml", {store: root.store});
        }
        if (root.screens.home !== null) {
            visit.setSource("qrc:/qt/qml/Duskfern/StorageOverview/HomeView.qml", {store: root.screens.home});
        } else if (root.screens.junk !== null) {
            visit.setSource("qrc:/qt/qml/Duskfern/JunkCleaner/JunkCleanerView.qml", {store: root.screens.junk});
        } else {
            visit.source = "";
        }
        root.shown = root.store.mode === Mode.Space ? spaceMap : visit;
        root.takeFocus();
    }

    /// Does nothing unless the space map, which shows the selection, is the current screen.
    function moveSelectedToTrash() {
        if (root.store.mode === Mode.Space) {
            root.store.moveSelectedToTrash();
        }
    }

    dividerName: "Ancho de la barra lateral"
    hairline: true
    // Follows the font, but leaves most of the width to the screen.
    idealFirst: Math.min(200 * Theme.growth, Math.max(200, 0.3 * width))
    maximumFirst: 230 * Theme.growth
    minimumFirst: Math.min(180 * Theme.growth, Math.max(180, 0.25 * width))
    minimumSecond: 600

    first: SidebarView {
        anchors.fill: parent
        store: root.store
    }
    second: Item {
        anchors.fill: parent

        // Kept once loaded. Disabled while hidden, because a hidden item keeps the focus.
        Loader {
            id: spaceMap

            anchors.fill: parent
            enabled: root.shown === spaceMap
            visible: root.shown === spaceMap
        }

        // Loaded anew for each visit. Its store is passed once instead of bound, because the store is destroyed after
        // the screen.
        Loader {
            id: visit

            anchors.fill: parent

            Component.onCompleted: root.updateScreen()
        }
    }

    Connections {
        function onChanged() {
            root.updateScreen();
        }

        target: root.screens
    }
}
