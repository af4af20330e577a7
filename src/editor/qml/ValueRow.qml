import QtQuick
import QtQuick.Templates as T
import Vantro.Native

// A number that is dragged, typed or stepped with the arrow keys. A double click on the slider
// brings the usual one back.
Item {
    id: row

    required property SidebarModel sidebar
    required property string label
    required property real value // the model's, which has the last word
    required property real from
    required property real to
    required property real usual
    property real factor: 1 // from the model's unit to the one that is shown
    property int decimals: 0
    property real step: Math.pow(10, -decimals) // of an arrow key, in the unit that is shown
    property string unit: ""
    property bool logarithmic: false
    property bool fromLeft: false // of the picture, in every language
    signal edited(real value)

    readonly property real grain: Math.pow(10, decimals) * factor
    property double lastPress: 0 // ms
    property bool doubled: false // the release to come is that of a double click

    implicitWidth: 240
    implicitHeight: field.height + knob.height

    function place(number: real): real { return logarithmic ? Math.log2(number) : number }
    function number(place: real): real { return logarithmic ? Math.pow(2, place) : place }
    function text(number: real): string {
        return (number * factor).toFixed(decimals).replace(".", Qt.locale().decimalPoint) + unit
    }
    function show() {
        slider.value = place(Math.min(Math.max(value, from), to))
        if (!field.typed)
            field.text = text(value)
    }
    function set(number: real) {
        edited(Math.round(number * grain) / grain)
        show()
    }
    function nudge(steps: real) {
        set(Math.min(Math.max(value + steps * step / factor, from), to))
    }
    function bringUsual() {
        doubled = false
        sidebar.continueGesture()
        edited(usual)
        show()
        sidebar.endGesture()
    }
    onValueChanged: show()
    Component.onCompleted: show()

    Label {
        anchors { left: parent.left; right: field.left; rightMargin: Theme.tight; verticalCenter: field.verticalCenter }
        text: row.label
        elide: Text.ElideRight
        Accessible.ignored: true
    }
    T.TextField {
        id: field
        property bool typed: false

        objectName: row.objectName + "Field"
        anchors.right: parent.right
        width: 66
        implicitHeight: 24
        leftPadding: 6
        rightPadding: 6
        horizontalAlignment: TextInput.AlignRight
        verticalAlignment: TextInput.AlignVCenter
        color: Theme.text
        selectionColor: Theme.accent
        selectedTextColor: Theme.accentInk
        font.pixelSize: Theme.body
        selectByMouse: true
        hoverEnabled: true
        Accessible.name: row.label
        onTextEdited: typed = true
        onActiveFocusChanged: activeFocus ? selectAll() : take()
        onAccepted: {
            take()
            focus = false
        }
        Keys.onUpPressed: row.nudge(1)
        Keys.onDownPressed: row.nudge(-1)
        Keys.onEscapePressed: event => {
            typed = false
            row.show()
            event.accepted = false // the keys go back
        }
        function take() {
            const number = parseFloat(text.replace(",", "."))
            const isNew = typed && !isNaN(number)
            typed = false
            if (isNew)
                row.set(number / row.factor)
            row.show()
        }
        background: Rectangle {
            radius: Theme.radius - 2
            color: field.activeFocus ? Theme.surface : field.hovered ? Theme.hover : "transparent"
            border.width: field.activeFocus ? 2 : 1
            border.color: field.activeFocus ? Theme.focusRing : field.hovered ? Theme.border : "transparent"
        }
    }
    // What has the keyboard, and what assistive technology reads and writes, in the unit that is shown;
    // the slider in it is the pointer's.
    Item {
        id: knob
        property real value: row.value * row.factor
        readonly property real minimumValue: row.from * row.factor
        readonly property real maximumValue: row.to * row.factor
        readonly property real stepSize: row.step

        objectName: row.objectName + "Slider"
        anchors { left: parent.left; right: parent.right; top: field.bottom }
        height: 20
        activeFocusOnTab: true // a drag leaves the keyboard where it is
        Accessible.role: Accessible.Slider
        Accessible.name: row.label
        Accessible.description: row.text(row.value)
        Accessible.focusable: true
        Accessible.onIncreaseAction: row.nudge(1)
        Accessible.onDecreaseAction: row.nudge(-1)
        onValueChanged: {
            if (value === row.value * row.factor)
                return
            const to = value / row.factor
            value = Qt.binding(() => row.value * row.factor)
            row.set(Math.min(Math.max(to, row.from), row.to))
        }
        Keys.onPressed: event => {
            const steps = row.stepsOf(event)
            if (steps === 0)
                return
            event.accepted = true
            if (!event.isAutoRepeat)
                row.sidebar.beginGesture()
            row.nudge(steps)
        }
        Keys.onReleased: event => {
            if (row.stepsOf(event) === 0 || event.isAutoRepeat)
                return
            event.accepted = true
            row.sidebar.endGesture()
        }
    }
    T.Slider {
        id: slider
        anchors.fill: knob
        LayoutMirroring.enabled: row.LayoutMirroring.enabled && !row.fromLeft
        focusPolicy: Qt.NoFocus
        activeFocusOnTab: false
        from: row.place(row.from)
        to: row.place(row.to)
        hoverEnabled: true
        Accessible.ignored: true
        onMoved: row.set(row.number(value))
        onPressedChanged: {
            if (!pressed)
                return row.doubled ? row.bringUsual() : row.sidebar.endGesture()
            const now = Date.now()
            if (now - row.lastPress < 500)
                row.sidebar.continueGesture() // a double click is one step
            else
                row.sidebar.beginGesture()
            row.lastPress = now
        }
        TapHandler {
            // The slider takes the place of its release after this.
            onDoubleTapped: slider.pressed ? row.doubled = true : row.bringUsual()
        }
        background: Rectangle {
            x: slider.leftPadding
            y: (slider.height - height) / 2
            width: slider.availableWidth
            height: 4
            radius: 2
            color: Theme.groove
            Rectangle {
                x: slider.mirrored ? parent.width - width : 0
                width: slider.position * parent.width
                height: parent.height
                radius: 2
                color: Theme.accent
            }
        }
        handle: Rectangle {
            x: slider.leftPadding + slider.visualPosition * (slider.availableWidth - width)
            y: (slider.height - height) / 2
            width: 14
            height: 14
            radius: 7
            color: slider.pressed ? Theme.accentPressed : Theme.dark ? "#ececee" : "#ffffff"
            border.width: 1
            border.color: Theme.dark ? "#00000000" : Theme.disabledText
            FocusRing { shown: knob.activeFocus; cornerRadius: 7 }
        }
    }
    // How many steps a key asks for; with Shift, ten times as many.
    function stepsOf(event: var): real {
        const far = event.modifiers & Qt.ShiftModifier ? 10 : 1
        const forward = slider.mirrored ? Qt.Key_Left : Qt.Key_Right
        const back = slider.mirrored ? Qt.Key_Right : Qt.Key_Left
        switch (event.key) {
        case forward:
        case Qt.Key_Up: return far
        case back:
        case Qt.Key_Down: return -far
        case Qt.Key_PageUp: return 10
        case Qt.Key_PageDown: return -10
        case Qt.Key_Home: return -1e6
        case Qt.Key_End: return 1e6
        }
        return 0
    }
}
