import QtQuick
import QtQuick.Templates as T

// One choice out of a few, side by side. Arrow keys move it. A `current` of -1 is none of them.
FocusScope {
    id: picker

    // List of { label, symbol }; an empty symbol is none.
    required property var choices
    required property int current
    property string help: ""
    property bool stacked: false // symbols above their labels
    property bool labelled: true
    property real symbolSize: 16
    signal picked(int index)
    property bool used: false // only what the user does is animated
    readonly property bool mirrored: LayoutMirroring.enabled
    onPicked: used = true

    implicitHeight: 32
    implicitWidth: choices.length * 96
    Accessible.role: Accessible.Grouping
    Accessible.name: help

    function step(by: int) {
        const next = current + by
        if (next < 0 || next >= choices.length)
            return
        picked(next)
        segments.itemAt(next).forceActiveFocus(Qt.TabFocusReason)
    }

    Rectangle {
        anchors.fill: parent
        radius: Theme.radius + 1
        color: Theme.sunken
    }
    Rectangle {
        readonly property real segmentWidth: (picker.width - 4) / picker.choices.length
        x: 2 + (picker.mirrored ? picker.choices.length - 1 - picker.current : picker.current) * segmentWidth
        y: 2
        width: segmentWidth
        height: parent.height - 4
        radius: Theme.radius - 1
        visible: picker.current >= 0
        color: Theme.raised
        border.width: 1
        border.color: Theme.border
        Behavior on x { enabled: picker.used; NumberAnimation { duration: Theme.quick; easing.type: Easing.OutCubic } }
    }
    Row {
        anchors.fill: parent
        anchors.margins: 2
        Repeater {
            id: segments
            model: picker.choices
            // qmllint disable unqualified
            T.RadioButton {
                id: segment
                required property var modelData
                required property int index
                readonly property bool isCurrent: index === picker.current
                readonly property bool isEntered: index === Math.max(picker.current, 0) // by Tab

                width: (picker.width - 4) / picker.choices.length
                height: picker.height - 4
                focus: isEntered
                focusPolicy: isEntered || activeFocus ? Qt.TabFocus : Qt.NoFocus
                hoverEnabled: true
                autoExclusive: false
                checked: isCurrent
                Accessible.name: modelData.label
                Accessible.onPressAction: if (enabled) clicked()
                Accessible.onToggleAction: if (enabled) clicked()
                onClicked: {
                    picker.picked(index)
                    checked = Qt.binding(() => isCurrent) // also where that was refused
                }
                Keys.onLeftPressed: picker.step(picker.mirrored ? 1 : -1)
                Keys.onRightPressed: picker.step(picker.mirrored ? -1 : 1)
                contentItem: Item {
                    Grid {
                        anchors.centerIn: parent
                        flow: picker.stacked ? Grid.TopToBottom : Grid.LeftToRight
                        rows: picker.stacked ? 2 : 1
                        columns: picker.stacked ? 1 : 2
                        spacing: picker.stacked ? 3 : 6
                        horizontalItemAlignment: Grid.AlignHCenter
                        verticalItemAlignment: Grid.AlignVCenter
                        Symbol {
                            visible: segment.modelData.symbol !== ""
                            name: visible ? segment.modelData.symbol : "crop"
                            size: picker.symbolSize
                            color: label.color
                        }
                        Label {
                            id: label
                            visible: picker.labelled
                            text: segment.modelData.label
                            color: segment.isCurrent || segment.hovered ? Theme.text : Theme.secondaryText
                            font.weight: Font.Medium
                            font.pixelSize: picker.stacked ? Theme.caption : Theme.body
                            Accessible.ignored: true
                        }
                    }
                }
                background: Item {
                    FocusRing {
                        control: segment
                        anchors.margins: -1
                        cornerRadius: Theme.radius - 3
                    }
                }
            }
        }
    }
}
