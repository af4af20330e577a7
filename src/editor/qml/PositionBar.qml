import QtQuick
import QtQuick.Templates as T
import Vantro.Native

// Where in the output the picture is from.
Item {
    id: bar

    required property EditorModel editor

    implicitHeight: 48
    // Time runs to the right in every language.
    LayoutMirroring.enabled: false
    LayoutMirroring.childrenInherit: true

    Label {
        id: now
        objectName: "positionLabel"
        anchors { left: parent.left; leftMargin: Theme.margin; verticalCenter: parent.verticalCenter }
        width: 58
        text: bar.editor.positionLabel
        color: Theme.secondaryText
    }
    T.Slider {
        id: slider
        objectName: "position"
        anchors { left: now.right; right: total.left; verticalCenter: parent.verticalCenter }
        height: 24
        from: 0
        to: Math.max(bar.editor.duration, 0.001)
        value: bar.editor.position
        stepSize: 0.1
        snapMode: T.Slider.NoSnap
        enabled: bar.editor.duration > 0
        focusPolicy: Qt.StrongFocus
        hoverEnabled: true
        live: true
        Accessible.name: qsTr("Position")
        onMoved: bar.editor.position = value

        background: Rectangle {
            x: slider.leftPadding
            y: (slider.height - height) / 2
            width: slider.availableWidth
            height: 4
            radius: 2
            color: Theme.sunken
            Rectangle {
                width: slider.visualPosition * parent.width
                height: parent.height
                radius: 2
                color: slider.enabled ? Theme.accent : Theme.disabledText
            }
        }
        handle: Rectangle {
            x: slider.leftPadding + slider.visualPosition * (slider.availableWidth - width)
            y: (slider.height - height) / 2
            width: 16
            height: 16
            radius: 8
            color: slider.pressed ? Theme.accentPressed : Theme.dark ? "#ececee" : "#ffffff"
            border.width: 1
            border.color: Theme.dark ? "#00000000" : Theme.disabledText
            visible: slider.enabled
            FocusRing { control: slider; cornerRadius: 8 }
        }
    }
    Label {
        id: total
        objectName: "durationLabel"
        anchors { right: parent.right; rightMargin: Theme.margin; verticalCenter: parent.verticalCenter }
        width: 58
        horizontalAlignment: Text.AlignRight
        text: bar.editor.durationLabel
        color: Theme.secondaryText
    }
}
