import QtQuick
import Vantro.Native

// The segment that is selected.
SettingsSection {
    id: section

    required property SidebarModel sidebar
    readonly property SegmentGroup group: sidebar.segment
    readonly property var speeds: [0.5, 1, 1.5, 2, 4, 8]

    objectName: "segment"
    title: group.title
    onReset: group.reset()

    ValueRow {
        objectName: "speed"
        width: parent.width
        sidebar: section.sidebar
        label: qsTr("Speed")
        value: section.group.speed
        from: 0.25
        to: 16
        usual: 1
        decimals: 2
        step: 0.05
        unit: "x"
        logarithmic: true
        onEdited: value => section.group.speed = value
    }
    SegmentedPicker {
        objectName: "speedPresets"
        width: parent.width
        implicitHeight: 30
        help: qsTr("Speed")
        choices: section.speeds.map(speed => ({ label: String(speed).replace(".", Qt.locale().decimalPoint) + "x", symbol: "" }))
        current: section.speeds.indexOf(section.group.speed)
        onPicked: index => section.group.speed = section.speeds[index]
    }
    PushButton {
        objectName: "deleteSegment"
        width: parent.width
        enabled: section.group.removable
        text: qsTr("Delete Segment")
        symbol: "trash"
        onClicked: section.group.remove()
    }
}
