import QtQuick
import Vantro.Native

// The zoom that is selected.
SettingsSection {
    id: section

    required property SidebarModel sidebar
    readonly property ZoomGroup group: sidebar.zoom

    objectName: "zoom"
    title: group.title
    onReset: group.reset()

    ZoomValueRows {
        objectName: "zoom"
        width: parent.width
        sidebar: section.sidebar
        level: section.group.level
        leadIn: section.group.leadIn
        leadOut: section.group.leadOut
        onLevelEdited: value => section.group.level = value
        onLeadInEdited: value => section.group.leadIn = value
        onLeadOutEdited: value => section.group.leadOut = value
    }
    ValueRow {
        objectName: "zoomX"
        width: parent.width
        sidebar: section.sidebar
        label: qsTr("Center, from the left")
        value: section.group.x
        from: 0
        to: Math.max(section.group.width, 1)
        usual: section.group.width / 2
        fromLeft: true
        onEdited: value => section.group.x = value
    }
    ValueRow {
        objectName: "zoomY"
        width: parent.width
        sidebar: section.sidebar
        label: qsTr("Center, from the top")
        value: section.group.y
        from: 0
        to: Math.max(section.group.height, 1)
        usual: section.group.height / 2
        onEdited: value => section.group.y = value
    }
    PushButton {
        objectName: "deleteZoom"
        width: parent.width
        text: qsTr("Delete Zoom")
        symbol: "trash"
        onClicked: section.group.remove()
    }
}
