import QtQuick
import QtQuick.Templates as T

// A plain button that is only a symbol; its help text is also its accessible name.
T.Button {
    id: control

    required property string symbol
    required property string help
    property string tip: help
    property color ink: Theme.text
    property real symbolSize: 18

    implicitWidth: 34
    implicitHeight: 34
    focusPolicy: Qt.TabFocus // a click leaves the keyboard where it is
    hoverEnabled: true
    Accessible.name: help
    Accessible.description: enabled ? "" : qsTr("Unavailable")
    Accessible.onPressAction: if (enabled) clicked()
    Accessible.onToggleAction: if (enabled) clicked()
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    contentItem: Item {
        Symbol {
            anchors.centerIn: parent
            name: control.symbol
            size: control.symbolSize
            color: control.enabled ? control.ink : Theme.disabledText
        }
    }
    background: Rectangle {
        radius: Theme.radius
        color: control.down ? Theme.pressed : control.hovered && control.enabled ? Theme.hover : "transparent"
        FocusRing { control: control }
    }
    HelpTip {
        text: control.tip
        button: control
    }
}
