import QtQuick
import QtQuick.Templates as T

// Something that is on or off.
T.Switch {
    id: control

    implicitWidth: 240
    implicitHeight: 28
    focusPolicy: Qt.TabFocus
    hoverEnabled: true
    Accessible.name: text
    Accessible.onPressAction: turn()
    Accessible.onToggleAction: turn()
    Keys.onReturnPressed: turn()
    Keys.onEnterPressed: turn()

    function turn() {
        toggle()
        toggled()
    }

    contentItem: Label {
        rightPadding: control.mirrored ? 0 : 44
        leftPadding: control.mirrored ? 44 : 0
        verticalAlignment: Text.AlignVCenter
        text: control.text
        elide: Text.ElideRight
        Accessible.ignored: true
    }
    indicator: Rectangle {
        x: control.mirrored ? 0 : control.width - width
        y: (control.height - height) / 2
        width: 34
        height: 20
        radius: 10
        color: control.checked ? Theme.accent : Theme.groove
        Rectangle {
            x: 2 + (control.mirrored ? 1 - control.visualPosition : control.visualPosition) * 14
            y: 2
            width: 16
            height: 16
            radius: 8
            color: "#ffffff"
        }
        FocusRing { control: control; cornerRadius: 10 }
    }
}
