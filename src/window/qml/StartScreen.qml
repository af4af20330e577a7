import QtQuick
import Vantro.Native

// What can be begun: a new recording, one that nobody saved, a project that was used before.
FocusScope {
    id: screen

    required property MainModel app
    required property DisplayChoice displays
    required property ActionGuard guard
    required property LevelMeters meters
    required property DeviceChoice microphones
    required property DeviceChoice cameras
    required property CameraView camera
    required property UnsavedRecordingsModel recordings
    required property RecentProjectsModel recents

    implicitWidth: Math.max(controls.implicitWidth, 340)
    implicitHeight: controls.implicitHeight + (lists.visible ? lists.height + Theme.wide : 0)

    Component.onCompleted: recents.refresh()

    RecordingControls {
        id: controls
        anchors { left: parent.left; right: parent.right; top: parent.top }
        height: implicitHeight
        focus: true
        app: screen.app
        displays: screen.displays
        guard: screen.guard
        meters: screen.meters
        microphones: screen.microphones
        cameras: screen.cameras
        camera: screen.camera
    }
    Rectangle {
        anchors { left: parent.left; right: parent.right; top: controls.bottom }
        height: 1
        visible: lists.visible
        color: Theme.border
    }
    Column {
        id: lists
        anchors { left: parent.left; right: parent.right; top: controls.bottom; leftMargin: Theme.gap; rightMargin: Theme.gap; topMargin: Theme.tight }
        visible: screen.recordings.count + screen.recents.count > 0
        spacing: Theme.tight
        StartList {
            id: unsaved
            width: parent.width
            title: qsTr("Recordings not saved")
            listName: "unsavedRecordings"
            model: screen.recordings
            onOpened: row => { if (screen.guard.openProject) screen.recordings.open(row) }
            onRemoved: row => screen.recordings.askDelete(row)
            // qmllint disable unqualified
            delegate: StartRow {
                required property int index
                required property string name
                required property string about
                required property string picture
                width: ListView.view.width
                height: unsaved.rowHeight
                isCurrent: ListView.isCurrentItem && ListView.view.activeFocus
                hasPicture: true
                title: name
                note: about
                pictureName: picture
                removeSymbol: "trash"
                removeHelp: qsTr("Delete…")
                onClicked: unsaved.opened(index)
                onRemoved: unsaved.removed(index)
            }
            // qmllint enable unqualified
        }
        StartList {
            id: recent
            width: parent.width
            rowHeight: 42
            title: qsTr("Recent projects")
            listName: "recentProjects"
            model: screen.recents
            onOpened: row => { if (screen.guard.openProject) screen.recents.open(row) }
            onRemoved: row => screen.recents.forget(row)
            // qmllint disable unqualified
            delegate: StartRow {
                required property int index
                required property string name
                required property string folder
                required property bool missing
                width: ListView.view.width
                height: recent.rowHeight
                isCurrent: ListView.isCurrentItem && ListView.view.activeFocus
                title: name
                note: missing ? qsTr("Not found: %1").arg(folder) : folder
                faded: missing
                removeSymbol: "xmark"
                removeSymbolSize: 10
                removeHelp: qsTr("Remove from this list")
                onClicked: recent.opened(index)
                onRemoved: recent.removed(index)
            }
            // qmllint enable unqualified
        }
    }
}
