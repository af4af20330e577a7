import QtQuick
import QtQuick.Templates as T

// How to export, and the button that does it.
T.Popup {
    id: popover

    required property QtObject editor

    padding: Theme.margin
    margins: Theme.gap
    implicitWidth: contentItem.implicitWidth + 2 * padding
    implicitHeight: contentItem.implicitHeight + 2 * padding
    focus: true
    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutsideParent
    onOpened: format.forceActiveFocus(Qt.TabFocusReason)

    contentItem: Column {
        spacing: Theme.wide
        Label {
            text: "Export Settings"
            font.pixelSize: Theme.headline
            font.weight: Font.DemiBold
        }
        Row {
            spacing: Theme.wide
            Label {
                width: 76
                height: Theme.controlHeight
                verticalAlignment: Text.AlignVCenter
                text: "Format"
                color: Theme.secondaryText
            }
            ChoiceBox {
                id: format
                objectName: "exportFormat"
                help: "Format"
                model: popover.editor.formats
            }
        }
        Row {
            spacing: Theme.wide
            Label {
                width: 76
                height: Theme.controlHeight
                verticalAlignment: Text.AlignVCenter
                text: "Resolution"
                color: Theme.secondaryText
            }
            ChoiceBox {
                id: resolution
                objectName: "exportResolution"
                help: "Resolution"
                enabled: !popover.editor.hasFixedSize(format.currentIndex)
                displayText: enabled ? currentText : "Up to 640 wide"
                model: popover.editor.resolutions
            }
        }
        PushButton {
            objectName: "exportNow"
            anchors.right: parent.right
            prominent: true
            text: "Export"
            onClicked: {
                popover.close()
                popover.editor.exportRecording(format.currentIndex, resolution.currentIndex)
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
