import QtQuick
import Vantro.Native

// How the pointer is drawn.
SettingsSection {
    id: section

    required property SidebarModel sidebar
    readonly property PointerGroup group: sidebar.pointer

    objectName: "pointer"
    title: qsTr("Pointer")
    onReset: group.reset()

    SwitchRow {
        objectName: "pointerShown"
        width: parent.width
        text: qsTr("Show pointer")
        checked: section.group.shown
        onToggled: section.group.shown = checked
    }
    ValueRow {
        objectName: "pointerScale"
        width: parent.width
        visible: section.group.shown
        sidebar: section.sidebar
        label: qsTr("Size")
        value: section.group.scale
        from: 0.5
        to: 10
        usual: 3
        decimals: 1
        unit: "x"
        onEdited: value => section.group.scale = value
    }
}
