import QtQuick
import Duskfern.Engine
import Duskfern.Shell
import Duskfern.Theme

/// Says to screen readers what happens in the window. Seen by them only while it does.
Announcer {
    id: root

    required property ScanStore store
    required property ScreenStores screens

    Accessible.ignored: root.text === ""
    Accessible.name: root.text
    Accessible.role: Accessible.Notification
    height: 1
    width: 1

    Announcements {
        screens: root.screens
        store: root.store

        onAnnounced: text => root.announce(text)
    }
}
