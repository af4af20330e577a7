import QtQuick
import Vantro.Native

// How the recording stands on the canvas.
SettingsSection {
    id: section

    required property SidebarModel sidebar
    readonly property FrameGroup group: sidebar.frame

    objectName: "frame"
    title: qsTr("Frame")
    onReset: group.reset()

    ValueRow {
        objectName: "padding"
        width: parent.width
        sidebar: section.sidebar
        label: qsTr("Padding")
        value: section.group.padding
        from: 0
        to: 0.45
        usual: 0.08
        factor: 100
        unit: " %"
        onEdited: value => section.group.padding = value
    }
    ValueRow {
        objectName: "cornerRadius"
        width: parent.width
        sidebar: section.sidebar
        label: qsTr("Corner radius")
        value: section.group.cornerRadius
        from: 0
        to: 400
        usual: 32
        unit: " px"
        onEdited: value => section.group.cornerRadius = value
    }
    Label {
        width: parent.width
        text: qsTr("Canvas")
        Accessible.ignored: true
    }
    SegmentedPicker {
        objectName: "canvas"
        width: parent.width
        implicitHeight: 52
        stacked: true
        symbolSize: 24
        help: qsTr("Canvas")
        choices: {
            const symbols = ["arrow.up.left.and.arrow.down.right", "canvas.16x9", "canvas.4x3", "canvas.1x1", "canvas.9x16"]
            return section.group.canvasNames.map((name, index) => ({ label: name, symbol: symbols[index] }))
        }
        current: section.group.canvas
        onPicked: index => section.group.canvas = index
    }
    PushButton {
        objectName: "useForNew"
        width: parent.width
        text: qsTr("Use This Look for New Recordings")
        help: qsTr("New recordings begin with this background, padding, corner radius and canvas")
        onClicked: section.group.useForNewRecordings()
    }
}
