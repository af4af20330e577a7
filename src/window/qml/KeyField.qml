import QtQuick
import QtQuick.Templates as T

// Where keys are pressed that are to be taken. A click or Enter begins; Escape leaves them as they
// were, Backspace takes them away.
T.AbstractButton {
    id: field

    required property string name
    required property string keys // empty for none
    property bool listening: false
    signal removed()
    // Returns whether what is pressed is all.
    required property var press

    implicitHeight: Theme.controlHeight
    focusPolicy: Qt.TabFocus
    hoverEnabled: true
    Accessible.name: name
    Accessible.description: shown.text
    Accessible.onPressAction: begin()
    onClicked: begin()
    onActiveFocusChanged: if (!activeFocus) listening = false

    function begin() {
        forceActiveFocus(Qt.TabFocusReason)
        listening = true
    }

    // Or a shortcut would have them first.
    Keys.onShortcutOverride: event => event.accepted = listening
    Keys.onPressed: event => {
        event.accepted = listening
        if (!listening) {
            if (event.key === Qt.Key_Return || event.key === Qt.Key_Enter) {
                event.accepted = true
                begin()
            }
        } else if (event.key === Qt.Key_Escape) {
            listening = false
        } else if (event.key === Qt.Key_Backspace && event.modifiers === Qt.NoModifier) {
            listening = false
            removed()
        } else if (press(event.key, event.modifiers)) {
            listening = false
        }
    }

    contentItem: Label {
        id: shown
        leftPadding: 9
        rightPadding: 9
        verticalAlignment: Text.AlignVCenter
        text: field.listening ? qsTr("Press the keys…") : field.keys !== "" ? field.keys : qsTr("none")
        color: field.listening || field.keys === "" ? Theme.secondaryText : Theme.text
        elide: Text.ElideRight
        Accessible.ignored: true
    }
    background: Rectangle {
        radius: Theme.radius
        color: Theme.surface
        border.width: field.listening ? 2 : 1
        border.color: field.listening ? Theme.focusRing : Theme.border
        Rectangle {
            anchors.fill: parent
            radius: parent.radius
            color: Theme.hover
            visible: field.hovered && !field.listening
        }
        FocusRing { control: field }
    }
}
