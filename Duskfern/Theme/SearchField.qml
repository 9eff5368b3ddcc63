import QtQuick
import QtQuick.Templates as T

/// A search field with a button that clears it.
T.TextField {
    id: root

    /// The store's value. Shown by the field, which reports edits with `edited`.
    property string value: ""

    signal edited(string text)

    Accessible.name: root.placeholderText
    Accessible.role: Accessible.EditableText
    Accessible.searchEdit: true
    color: Theme.primary
    font.family: Theme.family
    font.pixelSize: Theme.body
    hoverEnabled: true
    implicitWidth: Math.ceil(placeholder.implicitWidth) + leftPadding + rightPadding
    implicitHeight: Math.ceil(contentHeight) + topPadding + bottomPadding
    leftPadding: 18 + Theme.body
    persistentSelection: true
    placeholderTextColor: Theme.secondary
    renderType: Text.NativeRendering
    rightPadding: 28
    selectByMouse: true
    selectedTextColor: Theme.onTint
    selectionColor: Theme.accentFill
    text: root.value
    verticalAlignment: TextInput.AlignVCenter
    bottomPadding: 7
    topPadding: 7

    Keys.onEscapePressed: event => {
        event.accepted = root.text !== "";
        root.edited("");
    }
    Keys.onPressed: event => menu.press(event)
    onTextEdited: root.edited(root.text)

    background: Rectangle {
        border.color: Theme.outline(root.hovered ? 0.2 : 0.12)
        border.width: 1
        color: Theme.field
        radius: 8

        Symbol {
            anchors.left: parent.left
            anchors.leftMargin: 10
            anchors.verticalCenter: parent.verticalCenter
            color: Theme.secondary
            name: "magnifyingglass"
        }

        FocusRing {
            always: true
            cornerRadius: 11
            shown: root.activeFocus
        }
    }

    TextMenuOpener {
        id: menu

        field: root
    }

    Label {
        id: placeholder

        Accessible.ignored: true
        anchors.left: parent.left
        anchors.leftMargin: root.leftPadding
        anchors.verticalCenter: parent.verticalCenter
        color: root.placeholderTextColor
        text: root.placeholderText
        visible: root.text === "" && root.preeditText === ""
    }

    Pressable {
        id: clear

        Accessible.name: "Borrar la búsqueda"
        anchors.right: parent.right
        anchors.rightMargin: 6
        anchors.verticalCenter: parent.verticalCenter
        height: 20
        visible: root.text !== ""
        width: 20

        onClicked: {
            root.edited("");
            root.forceActiveFocus();
        }

        contentItem: Item {
            Symbol {
                anchors.centerIn: parent
                color: clear.down || clear.hovered ? Theme.primary : Theme.secondary
                name: "xmark.circle.fill"
                size: 13
            }

            FocusRing {
                cornerRadius: 12
                inset: -1
                shown: clear.activeFocus
            }
        }
    }
}
