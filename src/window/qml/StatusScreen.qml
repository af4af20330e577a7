import QtQuick

// One line of text, with a button where there is something to do about it.
FocusScope {
    id: screen

    property string text: ""
    property string note: ""
    property string action: ""
    property bool large: false
    signal triggered()

    implicitWidth: 340
    implicitHeight: 120

    Column {
        anchors.centerIn: parent
        spacing: Theme.wide
        Label {
            anchors.horizontalCenter: parent.horizontalCenter
            text: screen.text
            color: screen.large ? Theme.text : Theme.secondaryText
            font.pixelSize: screen.large ? Theme.display : Theme.body
            font.weight: screen.large ? Font.DemiBold : Font.Normal
        }
        Label {
            objectName: "statusNote"
            anchors.horizontalCenter: parent.horizontalCenter
            visible: text !== ""
            width: Math.min(implicitWidth, screen.width - 2 * Theme.margin)
            text: screen.note
            wrapMode: Text.Wrap
            horizontalAlignment: Text.AlignHCenter
            font.pixelSize: Theme.caption
            color: Theme.secondaryText
        }
        PushButton {
            objectName: "statusAction"
            anchors.horizontalCenter: parent.horizontalCenter
            visible: screen.action !== ""
            focus: visible
            text: screen.action
            onClicked: screen.triggered()
        }
    }
    Shortcut {
        sequence: "Escape"
        autoRepeat: false
        enabled: screen.action !== ""
        onActivated: screen.triggered()
    }
}
