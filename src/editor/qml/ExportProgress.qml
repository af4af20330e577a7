import QtQuick
import QtQuick.Templates as T
import Vantro.Native

// How far an export is, and the way out of it.
Item {
    id: progress

    required property EditorModel editor

    implicitWidth: 190
    implicitHeight: Theme.controlHeight

    T.ProgressBar {
        id: bar
        objectName: "exportBar"
        anchors { left: parent.left; right: text.left; rightMargin: Theme.gap; verticalCenter: parent.verticalCenter; verticalCenterOffset: left.visible ? -7 : 0 }
        implicitHeight: 4
        value: progress.editor.progress
        Accessible.name: qsTr("Export progress")
        Accessible.description: progress.editor.progressText + " " + progress.editor.timeLeft
        background: Rectangle {
            radius: 2
            color: Theme.groove
        }
        contentItem: Item {
            Rectangle {
                anchors { left: parent.left; top: parent.top; bottom: parent.bottom }
                width: bar.width * bar.position
                radius: 2
                color: Theme.accent
            }
        }
    }
    Label {
        id: left
        objectName: "timeLeft"
        anchors { left: bar.left; right: bar.right; top: bar.bottom; topMargin: 2 }
        visible: text !== ""
        text: progress.editor.timeLeft
        elide: Text.ElideRight
        font.pixelSize: Theme.caption
        color: Theme.secondaryText
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
        help: qsTr("Cancel the export")
        onClicked: progress.editor.cancelExport()
    }
}
