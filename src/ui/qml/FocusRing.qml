import QtQuick
import QtQuick.Templates as T

// Drawn around the control that has the keyboard.
Rectangle {
    required property T.Control control
    property real cornerRadius: Theme.radius

    anchors.fill: parent
    anchors.margins: -3
    radius: cornerRadius + 3
    color: "transparent"
    border.width: 2
    border.color: Theme.focusRing
    visible: control.visualFocus
}
