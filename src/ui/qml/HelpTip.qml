import QtQuick
import QtQuick.Templates as T

// The help text of the button that it stands in, for the pointer and for the keyboard. Once the
// button has been used it is in the way.
Tip {
    id: tip

    required property T.AbstractButton button
    property bool used: false
    readonly property bool asked: button.hovered || button.visualFocus

    shown: asked && !used
    onAskedChanged: if (!asked) used = false

    Connections {
        target: tip.button
        function onPressed() { tip.used = true }
        function onClicked() { tip.used = true }
    }
}
