pragma ComponentBehavior: Bound

import QtQuick
import Duskfern.FolderBrowser
import Duskfern.Theme

/// The list of shortcuts.
Rectangle {
    id: root

    required property FolderBrowser browser

    color: Theme.tint(Theme.primary, Theme.dark ? 0.03 : 0.025)

    ListView {
        id: list

        Accessible.name: "Lugares"
        Accessible.role: Accessible.List
        activeFocusOnTab: true
        anchors.fill: parent
        boundsBehavior: Flickable.StopAtBounds
        bottomMargin: 6
        clip: true
        currentIndex: 0
        highlightFollowsCurrentItem: true
        keyNavigationEnabled: true
        model: root.browser.places
        topMargin: 6

        delegate: PlaceRow {
            chosen: index === root.browser.currentPlace
            focused: list.activeFocus && index === list.currentIndex
            width: ListView.view.width

            onPressed: root.browser.goToPlace(index)
        }

        Keys.onEnterPressed: root.browser.goToPlace(list.currentIndex)
        Keys.onReturnPressed: root.browser.goToPlace(list.currentIndex)
        Keys.onSpacePressed: root.browser.goToPlace(list.currentIndex)
        onActiveFocusChanged: {
            if (list.activeFocus && root.browser.currentPlace >= 0) {
                list.currentIndex = root.browser.currentPlace;
            }
        }

        ScrollThumb {
            view: list
        }
    }

    Divider {
        anchors.right: parent.right
        height: parent.height
    }
}
