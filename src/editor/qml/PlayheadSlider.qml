import QtQuick
import QtQuick.Templates as T
import Vantro.Native

// The playhead on the length of the recording; dragging it scrubs.
T.Slider {
    id: slider

    required property PlayerTimeObserver transport

    implicitHeight: 24
    from: 0
    to: 1
    value: transport.progress
    stepSize: transport.duration > 0 ? Math.min(0.1 / transport.duration, 1) : 1 // a tenth of a second
    snapMode: T.Slider.NoSnap
    enabled: transport.duration > 0
    focusPolicy: Qt.TabFocus // a drag leaves the keyboard where it is
    hoverEnabled: true
    live: true
    // Time runs to the right in every language.
    LayoutMirroring.enabled: false
    Accessible.name: qsTr("Playhead")
    onPressedChanged: transport.isScrubbing = pressed
    onMoved: transport.seek(value)

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
