import QtQuick
import Duskfern.Engine
import Duskfern.Shell
import Duskfern.Theme

/// The sidebar beside the screen of the current mode.
SplitPane {
    id: root

    required property ScanStore store
    required property ScreenStores screens

    /// The loader of the screen that is shown. Only that screen can have the keyboard.
    property Loader shown: visit

    function focusSearch() {
        root.store.mode = Mode.Space;
        spaceMap.item.focusSearch(); // qmllint disable type
    }

    /// Shows a screen and gives it the keyboard, also where it is shown already.
    function show(mode: int) {
        root.store.mode = mode;
        root.takeFocus();
    }

    /// Gives the keyboard to what a person would act on first in the screen that is shown.
    function takeFocus() {
        if (root.enabled) {
            root.shown.item.firstFocus().forceActiveFocus(); // qmllint disable type
        }
    }

    // Screens are named by their files, because the type of an inline one would be loaded at launch.
    function follow() {
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
    second: Item {
        anchors.fill: parent

        // Once shown it is kept. What is hidden would keep the focus.
        Loader {
            id: spaceMap

            anchors.fill: parent
            enabled: root.shown === spaceMap
            visible: root.shown === spaceMap
        }

        // Made anew for each visit. The store is handed over once rather than bound, because it goes away after its
        // screen.
        Loader {
            id: visit

            anchors.fill: parent

            Component.onCompleted: root.follow()
        }
    }

    Connections {
        function onChanged() {
            root.follow();
        }

        target: root.screens
    }
}
