import QtQuick
import QtQuick.Templates as T
import Vantro.Native

// How to export, and the button that does it.
T.Popup {
    id: popover

    required property EditorModel editor

    padding: Theme.margin
    margins: Theme.gap
    implicitWidth: contentItem.implicitWidth + 2 * padding
    implicitHeight: contentItem.implicitHeight + 2 * padding
    focus: true
    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutsideParent
    onOpened: format.forceActiveFocus(Qt.TabFocusReason)

    contentItem: Column {
        spacing: Theme.wide
        Accessible.role: Accessible.Dialog
        Accessible.name: qsTr("Export Settings")
        Label {
            anchors.left: parent.left
            text: qsTr("Export Settings")
            font.pixelSize: Theme.headline
            font.weight: Font.DemiBold
        }
        Row {
            spacing: Theme.wide
            Label {
                width: 76
                height: Theme.controlHeight
                verticalAlignment: Text.AlignVCenter
                text: qsTr("Format")
                color: Theme.secondaryText
            }
            ChoiceBox {
                id: format
                objectName: "exportFormat"
                help: qsTr("Format")
                model: popover.editor.formats
            }
        }
        Row {
            spacing: Theme.wide
            Label {
                width: 76
                height: Theme.controlHeight
                verticalAlignment: Text.AlignVCenter
                text: qsTr("Resolution")
                color: Theme.secondaryText
            }
            ChoiceBox {
                id: resolution
                objectName: "exportResolution"
                help: qsTr("Resolution")
                enabled: !popover.editor.hasFixedSize(format.currentIndex)
                displayText: enabled ? currentText : qsTr("Up to 640 wide")
                model: popover.editor.resolutions
            }
        }
        Row {
            spacing: Theme.wide
            Label {
                width: 76
                height: Theme.controlHeight
                verticalAlignment: Text.AlignVCenter
                text: qsTr("Quality")
                color: Theme.secondaryText
            }
            ChoiceBox {
                id: quality
                objectName: "exportQuality"
                help: qsTr("Quality")
                enabled: !popover.editor.hasFixedSize(format.currentIndex)
                displayText: enabled ? currentText : qsTr("Best for a GIF")
                model: popover.editor.qualities
            }
        }
        Item {
            width: parent.width
            height: Theme.controlHeight
            Label {
                objectName: "sizeEstimate"
                anchors { left: parent.left; right: start.left; rightMargin: Theme.gap; verticalCenter: parent.verticalCenter }
                elide: Text.ElideRight
                text: popover.opened ? popover.editor.sizeEstimate(format.currentIndex, resolution.currentIndex, quality.currentIndex) : ""
                color: Theme.secondaryText
            }
            PushButton {
                id: start
                objectName: "exportNow"
                anchors.right: parent.right
                prominent: true
                text: qsTr("Export")
                onClicked: {
                    popover.close()
                    popover.editor.exportRecording(format.currentIndex, resolution.currentIndex,
                                                   quality.currentIndex)
                }
            }
        }
        Rectangle {
            width: parent.width
            height: 1
            color: Theme.border
        }
        Label {
            anchors.left: parent.left
            text: qsTr("Frame at the Playhead")
            font.weight: Font.DemiBold
        }
        Row {
            anchors.right: parent.right
            spacing: Theme.gap
            PushButton {
                objectName: "copyFrame"
                text: qsTr("Copy Frame")
                onClicked: {
                    popover.close()
                    popover.editor.copyFrame()
                }
            }
            PushButton {
                objectName: "saveFrame"
                text: qsTr("Save Frame…")
                onClicked: {
                    popover.close()
                    popover.editor.saveFrame()
                }
            }
        }
    }
    background: Rectangle {
        radius: Theme.radius + 3
        color: Theme.surface
        border.width: 1
        border.color: Theme.border
    }
}
