import QtQuick
import Vantro.Native

// How each sound track is heard.
SettingsSection {
    id: section

    required property SidebarModel sidebar
    readonly property SoundGroup group: sidebar.sound

    objectName: "sound"
    title: qsTr("Sound")
    onReset: group.reset()

    ValueRow {
        objectName: "systemVolume"
        width: parent.width
        visible: section.group.hasSystemAudio
        sidebar: section.sidebar
        label: qsTr("System audio")
        value: section.group.systemAudio
        from: 0
        to: 2
        usual: 1
        factor: 100
        unit: " %"
        onEdited: value => section.group.systemAudio = value
    }
    ValueRow {
        objectName: "microphoneVolume"
        width: parent.width
        visible: section.group.hasMicrophone
        sidebar: section.sidebar
        label: qsTr("Microphone")
        value: section.group.microphone
        from: 0
        to: 2
        usual: 1
        factor: 100
        unit: " %"
        onEdited: value => section.group.microphone = value
    }
    SwitchRow {
        objectName: "noiseReduced"
        width: parent.width
        visible: section.group.hasMicrophone
        text: qsTr("Reduce microphone noise")
        checked: section.group.noiseReduced
        onToggled: section.group.noiseReduced = checked
    }
}
