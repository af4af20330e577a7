import QtQuick
import Vantro.Native

// The webcam's picture over the film.
SettingsSection {
    id: section

    required property SidebarModel sidebar
    readonly property WebcamGroup group: sidebar.webcam

    objectName: "webcam"
    title: qsTr("Webcam")
    onReset: group.reset()

    SwitchRow {
        objectName: "webcamShown"
        width: parent.width
        text: qsTr("Show webcam")
        checked: section.group.shown
        onToggled: section.group.shown = checked
    }
    Column {
        width: parent.width
        visible: section.group.shown
        spacing: Theme.gap
        SwitchRow {
            objectName: "webcamMirrored"
            width: parent.width
            text: qsTr("Mirror")
            checked: section.group.mirrored
            onToggled: section.group.mirrored = checked
        }
        SegmentedPicker {
            objectName: "webcamCorner"
            width: parent.width
            implicitHeight: 34
            LayoutMirroring.enabled: false // left and right are those of the film
            LayoutMirroring.childrenInherit: true
            labelled: false
            symbolSize: 22
            help: qsTr("Corner")
            choices: [
                { label: qsTr("Top left"), symbol: "webcam.topLeft" },
                { label: qsTr("Top right"), symbol: "webcam.topRight" },
                { label: qsTr("Bottom left"), symbol: "webcam.bottomLeft" },
                { label: qsTr("Bottom right"), symbol: "webcam.bottomRight" }
            ]
            current: section.group.corner
            onPicked: index => section.group.corner = index
        }
        ValueRow {
            objectName: "webcamSize"
            width: parent.width
            sidebar: section.sidebar
            label: qsTr("Size")
            value: section.group.size
            from: 0.05
            to: 0.5
            usual: 0.2
            factor: 100
            unit: " %"
            onEdited: value => section.group.size = value
        }
    }
}
