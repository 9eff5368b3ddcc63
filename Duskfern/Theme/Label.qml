import QtQuick

/// Plain text: markup in a file name is not interpreted.
Text {
    Accessible.role: Accessible.StaticText
    Accessible.name: text
    color: Theme.primary
    elide: Text.ElideRight
    font.family: Theme.family
    font.pixelSize: Theme.body
    renderType: Text.NativeRendering
    textFormat: Text.PlainText
}
