import QtQuick

Text {
    color: Theme.text
    font.pixelSize: Theme.body
    textFormat: Text.PlainText
    renderType: Text.QtRendering
    Accessible.role: Accessible.StaticText
    Accessible.name: text
}
