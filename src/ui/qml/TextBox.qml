import QtQuick
import QtQuick.Templates as T

T.TextField {
    id: field

    implicitWidth: 200
    implicitHeight: Theme.controlHeight
    leftPadding: 9
    rightPadding: 9
    verticalAlignment: TextInput.AlignVCenter
    color: Theme.text
    selectionColor: Theme.accent
    selectedTextColor: Theme.accentInk
    placeholderTextColor: Theme.secondaryText
    font.pixelSize: Theme.body
    selectByMouse: true
    Accessible.name: placeholderText

    background: Rectangle {
        radius: Theme.radius
        color: field.activeFocus ? Theme.surface : field.hovered ? Theme.hover : "transparent"
        border.width: field.activeFocus ? 2 : field.hovered ? 1 : 0
        border.color: field.activeFocus ? Theme.focusRing : Theme.border
    }
    Label {
        anchors { left: parent.left; leftMargin: 9; verticalCenter: parent.verticalCenter }
        visible: field.text === ""
        text: field.placeholderText
        color: Theme.secondaryText
        Accessible.ignored: true
    }
}
