import QtQuick
import Vantro.Native

// What was chosen in the desktop's dialog, before it is recorded: an earlier choice that holds again
// is recorded when the user says so, or when the countdown has ended.
FocusScope {
    id: screen

    required property MainModel app

    implicitWidth: 340
    implicitHeight: column.implicitHeight + 2 * Theme.wide

    Column {
        id: column
        anchors { left: parent.left; right: parent.right; verticalCenter: parent.verticalCenter; margins: Theme.wide }
        spacing: Theme.wide
        Label {
            objectName: "chosenText"
            anchors.horizontalCenter: parent.horizontalCenter
            text: screen.app.countdown > 0 ? screen.app.countdown : qsTr("This will be recorded")
            font.pixelSize: screen.app.countdown > 0 ? Theme.display : Theme.body
            font.weight: Font.DemiBold
        }
        Image {
            objectName: "chosenPicture"
            anchors.horizontalCenter: parent.horizontalCenter
            source: screen.app.chosenPicture
            cache: false
            sourceSize { width: 300 * Screen.devicePixelRatio; height: 170 * Screen.devicePixelRatio }
            width: implicitWidth / Screen.devicePixelRatio
            height: implicitHeight / Screen.devicePixelRatio
            Accessible.role: Accessible.Graphic
            Accessible.name: qsTr("Picture of what will be recorded")
        }
        Row {
            anchors.horizontalCenter: parent.horizontalCenter
            spacing: Theme.gap
            PushButton {
                objectName: "confirm"
                visible: screen.app.countdown === 0
                focus: visible
                prominent: true
                text: qsTr("Record")
                onClicked: screen.app.confirmChosen()
            }
            PushButton {
                objectName: "chooseAgain"
                focus: screen.app.countdown > 0
                text: qsTr("Choose Again")
                help: qsTr("Choose anew in your desktop's dialog")
                onClicked: screen.app.chooseAnew()
            }
            PushButton {
                objectName: "cancelChosen"
                text: qsTr("Cancel")
                onClicked: screen.app.cancelAsking()
            }
        }
    }
    Shortcut {
        sequence: "Escape"
        autoRepeat: false
        onActivated: screen.app.cancelAsking()
    }
}
