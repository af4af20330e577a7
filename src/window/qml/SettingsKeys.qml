import QtQuick
import Vantro.Native

// The keys from anywhere: where the desktop chooses them, a button leads to its dialog.
SettingsSection {
    id: section

    required property KeysModel keys

    title: qsTr("Keys From Anywhere")
    resettable: false

    Label {
        width: parent.width
        text: section.keys.desktopChooses
            ? qsTr("These keys work whatever program you are in. Your desktop asks which they are.")
            : qsTr("These keys work whatever program you are in.")
        wrapMode: Text.Wrap
        font.pixelSize: Theme.caption
        color: Theme.secondaryText
    }
    // qmllint disable unqualified
    Repeater {
        model: section.keys
        SettingsRow {
            id: entry
            required property int index
            required property string name
            required property string keys
            label: name
            KeyField {
                objectName: "keys" + entry.index
                width: parent.width
                visible: !section.keys.desktopChooses
                name: entry.name
                keys: entry.keys
                press: (key, modifiers) => section.keys.press(entry.index, key, modifiers)
                onRemoved: section.keys.clear(entry.index)
            }
            Label {
                objectName: "boundKeys" + entry.index
                anchors.left: parent.left
                height: Theme.controlHeight
                verticalAlignment: Text.AlignVCenter
                visible: section.keys.desktopChooses
                text: entry.keys !== "" ? entry.keys : qsTr("none")
                color: entry.keys !== "" ? Theme.text : Theme.secondaryText
            }
        }
    }
    // qmllint enable unqualified
    TextEdit { // so that the commands in it can be copied
        objectName: "keysStatus"
        width: parent.width
        visible: text !== ""
        text: section.keys.status
        readOnly: true
        selectByMouse: true
        activeFocusOnPress: false
        wrapMode: Text.Wrap
        horizontalAlignment: TextEdit.AlignLeft
        renderType: TextEdit.QtRendering
        font.pixelSize: Theme.caption
        color: Theme.secondaryText
        selectionColor: Theme.accent
        selectedTextColor: Theme.accentInk
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }
    Row {
        anchors.right: parent.right
        spacing: Theme.gap
        PushButton {
            objectName: "turnOff"
            text: qsTr("Turn Off")
            enabled: section.keys.canTurnOff
            onClicked: section.keys.turnOff()
        }
        PushButton {
            objectName: "setUp"
            text: section.keys.desktopChooses ? qsTr("Set Up…") : qsTr("Use These Keys")
            enabled: section.keys.canSetUp
            onClicked: section.keys.setUp()
        }
    }
}
