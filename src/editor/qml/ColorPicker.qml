import QtQuick
import QtQuick.Templates as T
import Vantro.Native

// Any color, by hue, saturation and brightness, or by its figures.
Column {
    id: picker

    required property SidebarModel sidebar
    required property color color
    signal picked(color color)

    // Gray has no hue and black no saturation; those stay where they were.
    property real hue: 0
    property real saturation: 0
    property real brightness: 0
    property color told: "transparent"

    spacing: Theme.gap
    onColorChanged: if (!Qt.colorEqual(color, told)) follow()
    Component.onCompleted: follow()

    function follow() {
        if (color.hsvHue >= 0)
            hue = color.hsvHue
        if (color.hsvValue > 0)
            saturation = color.hsvSaturation
        brightness = color.hsvValue
        told = color
        field.text = color.toString().toUpperCase()
    }
    function tell() {
        told = Qt.hsva(hue, saturation, brightness, 1)
        picked(told)
        field.text = color.toString().toUpperCase()
    }
    function move(saturationBy: real, brightnessBy: real) {
        saturation = Math.min(Math.max(saturation + saturationBy, 0), 1)
        brightness = Math.min(Math.max(brightness + brightnessBy, 0), 1)
        tell()
    }

    Item {
        id: square
        objectName: "colorSquare"
        width: parent.width
        height: 110
        activeFocusOnTab: true
        LayoutMirroring.enabled: false
        Accessible.role: Accessible.Slider
        Accessible.name: qsTr("Saturation and brightness")
        Accessible.description: qsTr("%1 % and %2 %").arg(Math.round(picker.saturation * 100)).arg(Math.round(picker.brightness * 100))
        Accessible.focusable: true
        Keys.onLeftPressed: picker.move(-0.02, 0)
        Keys.onRightPressed: picker.move(0.02, 0)
        Keys.onUpPressed: picker.move(0, 0.02)
        Keys.onDownPressed: picker.move(0, -0.02)
        Rectangle {
            anchors.fill: parent
            gradient: Gradient {
                orientation: Gradient.Horizontal
                GradientStop { position: 0; color: "#ffffff" }
                GradientStop { position: 1; color: Qt.hsva(picker.hue, 1, 1, 1) }
            }
        }
        Rectangle {
            anchors.fill: parent
            gradient: Gradient {
                GradientStop { position: 0; color: "#00000000" }
                GradientStop { position: 1; color: "#ff000000" }
            }
        }
        Rectangle {
            x: picker.saturation * parent.width - 7
            y: (1 - picker.brightness) * parent.height - 7
            width: 14
            height: 14
            radius: 7
            color: picker.color
            border.width: 2
            border.color: picker.brightness > 0.6 && picker.saturation < 0.5 ? "#000000" : "#ffffff"
        }
        MouseArea {
            anchors.fill: parent
            preventStealing: true
            onPressed: event => {
                picker.sidebar.beginGesture()
                place(event.x, event.y)
            }
            onPositionChanged: event => place(event.x, event.y)
            onReleased: picker.sidebar.endGesture()
            onCanceled: picker.sidebar.endGesture()
            function place(x: real, y: real) {
                picker.move(x / width - picker.saturation, 1 - y / height - picker.brightness)
            }
        }
        FocusRing { shown: square.activeFocus; cornerRadius: 0 }
    }
    T.Slider {
        id: hueSlider
        objectName: "hueSlider"
        width: parent.width
        implicitHeight: 20
        from: 0
        to: 1
        value: picker.hue
        stepSize: 0.01
        focusPolicy: Qt.TabFocus
        LayoutMirroring.enabled: false
        Accessible.name: qsTr("Hue")
        Accessible.onIncreaseAction: value = Math.min(value + stepSize, 1)
        Accessible.onDecreaseAction: value = Math.max(value - stepSize, 0)
        // As assistive technology asks for them.
        readonly property real minimumValue: from
        readonly property real maximumValue: to
        onPressedChanged: pressed ? picker.sidebar.beginGesture() : picker.sidebar.endGesture()
        onValueChanged: {
            if (value === picker.hue)
                return
            picker.hue = value
            picker.tell()
            value = Qt.binding(() => picker.hue)
        }
        background: Rectangle {
            y: (hueSlider.height - height) / 2
            width: hueSlider.width
            height: 8
            gradient: Gradient {
                orientation: Gradient.Horizontal
                GradientStop { position: 0; color: "#ff0000" }
                GradientStop { position: 1 / 6; color: "#ffff00" }
                GradientStop { position: 2 / 6; color: "#00ff00" }
                GradientStop { position: 3 / 6; color: "#00ffff" }
                GradientStop { position: 4 / 6; color: "#0000ff" }
                GradientStop { position: 5 / 6; color: "#ff00ff" }
                GradientStop { position: 1; color: "#ff0000" }
            }
        }
        handle: Rectangle {
            x: hueSlider.visualPosition * (hueSlider.availableWidth - width)
            y: (hueSlider.height - height) / 2
            width: 14
            height: 14
            radius: 7
            color: Qt.hsva(picker.hue, 1, 1, 1)
            border.width: 2
            border.color: "#ffffff"
            FocusRing { control: hueSlider; cornerRadius: 7 }
        }
    }
    TextBox {
        id: field
        objectName: "colorField"
        width: parent.width
        placeholderText: qsTr("Color as #RRGGBB")
        maximumLength: 7
        onAccepted: take()
        onActiveFocusChanged: activeFocus ? selectAll() : take()
        Keys.onEscapePressed: event => {
            picker.follow()
            event.accepted = false // the keys go back
        }
        function take() {
            const figures = text.replace(/^#?/, "#")
            if (/^#[0-9a-fA-F]{6}$/.test(figures))
                picker.picked(figures)
            picker.follow()
        }
    }
}
