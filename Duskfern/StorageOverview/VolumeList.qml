pragma ComponentBehavior: Bound

import QtQuick
import Duskfern.Engine
import Duskfern.StorageOverview

/// One card per volume.
CardGrid {
    id: root

    required property HomeStore store

    Accessible.name: "Discos"
    cards: volumes
    columns: 1
    spacing: 18

    Repeater {
        id: volumes

        model: root.store.volumes

        VolumeCard {
            required property var modelData

            focused: root.activeFocus && root.current === index
            volume: modelData
            width: root.width
        }
    }
}
