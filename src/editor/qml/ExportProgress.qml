import QtQuick

// How far an export is, and the way out of it.
Item {
    id: progress

    required property QtObject editor

    implicitWidth: 176
    implicitHeight: Theme.controlHeight
    Accessible.role: Accessible.ProgressBar
    Accessible.name: "Export progress " + editor.progressText

    Rectangle {
        anchors { left: parent.left; right: text.left; rightMargin: Theme.gap; verticalCenter: parent.verticalCenter }
        height: 4
        radius: 2
        color: Theme.sunken
        Rectangle {
            width: parent.width * progress.editor.progress
            height: parent.height
            radius: 2
            color: Theme.accent
        }
    }
    Label {
        id: text
        objectName: "exportProgress"
        anchors { right: cancel.left; rightMargin: 2; verticalCenter: parent.verticalCenter }
        width: 38
        horizontalAlignment: Text.AlignRight
        text: progress.editor.progressText
        font.weight: Font.Medium
    }
    SymbolButton {
        id: cancel
        objectName: "cancelExport"
        anchors { right: parent.right; verticalCenter: parent.verticalCenter }
        implicitWidth: Theme.controlHeight
        implicitHeight: Theme.controlHeight
        symbol: "xmark"
        symbolSize: 12
        ink: Theme.secondaryText
        help: "Cancel the export"
        onClicked: progress.editor.cancelExport()
    }
}
