import QtQuick
import Duskfern.Theme

/// Cards in columns, with a single Tab stop: the arrow keys go from card to card.
Grid {
    id: root

    /// Creates the cards.
    required property Repeater cards

    /// The card that the keys act on.
    property int current: 0
    readonly property int count: root.cards.count

    /// The keyboard went to a card.
    signal reached(card: Item)

    function tellCard() {
        if (root.activeFocus && root.current < root.count) {
            const card = root.cards.itemAt(root.current);
            ScreenReader.moveFocus(card);
            root.reached(card);
        }
    }

    Accessible.role: Accessible.List
    activeFocusOnTab: root.count > 0 || root.activeFocus

    Keys.onPressed: event => {
        const steps = {[Qt.Key_Left]: -1, [Qt.Key_Right]: 1, [Qt.Key_Up]: -root.columns, [Qt.Key_Down]: root.columns, [Qt.Key_Home]: -root.current, [Qt.Key_End]: root.count - 1 - root.current};
        const wanted = root.current + (steps[event.key] ?? 0);
        if (wanted !== root.current && wanted >= 0 && wanted < root.count) {
            root.current = wanted;
            event.accepted = true;
        }
    }
    // The linter of Qt 6.4 does not know callLater.
    onActiveFocusChanged: Qt.callLater(root.tellCard) // qmllint disable type
    onCountChanged: root.current = Math.max(0, Math.min(root.current, root.count - 1))
    onCurrentChanged: Qt.callLater(root.tellCard) // qmllint disable type
}
