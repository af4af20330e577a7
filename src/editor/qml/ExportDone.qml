import QtQuick
import Vantro.Native

// What was exported, and what can be done with the file.
Rectangle {
    id: card

    required property EditorModel editor

    objectName: "exportDone"
    visible: editor.exportedFile !== ""
    width: row.width + 2 * Theme.wide
    height: row.height + 2 * Theme.gap
    radius: Theme.radius + 3
    color: Theme.surface
    border.width: 1
    border.color: Theme.border
    Accessible.role: Accessible.AlertMessage
    Accessible.name: message.text
    // A click here is not one on the stage.
    TapHandler { gesturePolicy: TapHandler.ReleaseWithinBounds }

    Row {
        id: row
        x: Theme.wide
        y: Theme.gap
        spacing: Theme.gap
        Label {
            id: message
            objectName: "exportedText"
            anchors.verticalCenter: parent.verticalCenter
            width: Math.min(implicitWidth, 260)
            elide: Text.ElideMiddle
            text: qsTr("Exported %1").arg(card.editor.exportedName)
        }
        PushButton {
            objectName: "showInFolder"
            text: qsTr("Show in Folder")
            onClicked: card.editor.showExported()
        }
        PushButton {
            objectName: "copyFile"
            text: qsTr("Copy File")
            onClicked: card.editor.copyExported()
        }
        SymbolButton {
            objectName: "forgetExported"
            implicitWidth: Theme.controlHeight
            implicitHeight: Theme.controlHeight
            symbol: "xmark"
            symbolSize: 12
            ink: Theme.secondaryText
            help: qsTr("Close")
            onClicked: card.editor.forgetExported()
        }
    }
}
