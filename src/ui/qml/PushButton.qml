import QtQuick
import QtQuick.Templates as T

// A button with a text and perhaps a symbol. `prominent` is for the one action that a screen is for.
T.Button {
    id: control

    property bool prominent: false
    property color fill: prominent ? Theme.accent : Theme.surface
    property color fillHover: prominent ? Theme.accentHover : Theme.surface
    property color fillPressed: prominent ? Theme.accentPressed : Theme.sunken
    property color ink: prominent ? Theme.accentInk : Theme.text
    property string symbol: ""
    property string help: ""

    implicitWidth: Math.max(implicitContentWidth + leftPadding + rightPadding, 64)
    implicitHeight: Theme.controlHeight
    leftPadding: Theme.wide
    rightPadding: Theme.wide
    focusPolicy: Qt.TabFocus // a click leaves the keyboard where it is
    hoverEnabled: true
    Accessible.name: text
    Accessible.description: enabled ? help : qsTr("Unavailable")
    Accessible.onPressAction: if (enabled) clicked()
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    contentItem: Item {
        implicitWidth: row.implicitWidth
        Row {
            id: row
            anchors.centerIn: parent
            spacing: 6
            Symbol {
                visible: control.symbol !== ""
                anchors.verticalCenter: parent.verticalCenter
                name: control.symbol !== "" ? control.symbol : "crop"
                size: 15
                color: control.enabled ? control.ink : Theme.disabledText
            }
            Label {
                anchors.verticalCenter: parent.verticalCenter
                text: control.text
                color: control.enabled ? control.ink : Theme.disabledText
                font.weight: control.prominent ? Font.DemiBold : Font.Medium
                Accessible.ignored: true
            }
        }
    }
    background: Rectangle {
        radius: Theme.radius
        color: !control.enabled ? Theme.hover : control.down ? control.fillPressed : control.hovered ? control.fillHover : control.fill
        border.width: control.prominent || !control.enabled ? 0 : 1
        border.color: Theme.border
        Rectangle {
            anchors.fill: parent
            radius: parent.radius
            color: Theme.hover
            visible: !control.prominent && control.hovered && !control.down && control.enabled
        }
        FocusRing { control: control }
    }
    HelpTip {
        text: control.help
        button: control
    }
}
