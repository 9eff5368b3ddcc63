pragma ComponentBehavior: Bound

import QtQuick
import Duskfern.Engine
import Duskfern.StorageOverview

/// One card per category, in as many columns as fit.
Grid {
    id: root

    required property HomeStore store
    required property list<color> colors

    readonly property real minimumWidth: 210
    readonly property real cellWidth: (width - (columns - 1) * spacing) / columns

    columns: Math.max(1, Math.floor((width + spacing) / (minimumWidth + spacing)))
    spacing: 12

    Repeater {
        model: root.store.categories

        CategoryCard {
            required property int index
            required property var modelData

            accent: root.colors[index % root.colors.length]
            item: modelData
            width: root.cellWidth
        }
    }
}
