pragma ComponentBehavior: Bound

import QtQuick
import Duskfern.Engine
import Duskfern.StorageOverview
import Duskfern.Theme

/// One card per category, in as many columns as fit.
CardGrid {
    id: root

    required property HomeStore store
    required property list<color> colors

    readonly property real minimumWidth: 105 + 105 * Theme.growth
    readonly property real cellWidth: (width - (columns - 1) * spacing) / columns

    Accessible.name: "Uso del disco principal"
    cards: categories
    columns: Math.max(1, Math.floor((width + spacing) / (minimumWidth + spacing)))
    spacing: 12

    Repeater {
        id: categories

        model: root.store.categories

        CategoryCard {
            required property var modelData

            accent: root.colors[index % root.colors.length]
            focused: root.activeFocus && root.current === index
            item: modelData
            width: root.cellWidth
        }
    }
}
