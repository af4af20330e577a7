import QtQuick
import QtQuick.Templates as T

// Drawn around the control that has the keyboard.
Rectangle {
    property T.Control control: null
    property bool shown: control?.visualFocus ?? false
    property real cornerRadius: Theme.radius

    anchors.fill: parent
    anchors.margins: -3
    radius: cornerRadius + 3
    color: "transparent"
    border.width: 2
    border.color: Theme.focusRing
    visible: shown
}
