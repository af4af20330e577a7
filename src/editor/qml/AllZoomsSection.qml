import QtQuick
import Vantro.Native

// All zooms at once.
SettingsSection {
    id: section

    required property SidebarModel sidebar
    readonly property AllZoomsGroup group: sidebar.allZooms

    objectName: "allZooms"
    title: qsTr("All Zooms (%1)").arg(group.count)
    onReset: group.reset()

    Label {
        objectName: "zoomsDiffer"
        visible: section.group.mixed
        width: parent.width
        text: qsTr("They differ. What you set here is set for all.")
        wrapMode: Text.Wrap
        font.pixelSize: Theme.caption
        color: Theme.secondaryText
    }
    ZoomValueRows {
        objectName: "allZooms"
        width: parent.width
        sidebar: section.sidebar
        level: section.group.level
        leadIn: section.group.leadIn
        leadOut: section.group.leadOut
        onLevelEdited: value => section.group.level = value
        onLeadInEdited: value => section.group.leadIn = value
        onLeadOutEdited: value => section.group.leadOut = value
    }
    PushButton {
        objectName: "removeAllZooms"
        width: parent.width
        text: qsTr("Remove All Zooms")
        symbol: "trash"
        onClicked: section.group.removeAll()
    }
}
