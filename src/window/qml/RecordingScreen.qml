import QtQuick
import Vantro.Native

// A recording under way: small, since it stands beside what is being recorded.
FocusScope {
    id: screen

    required property MainModel app
    required property ActionGuard guard
    required property LevelMeters meters

    readonly property real levelsWidth: levels.width > 0 ? levels.width + Theme.gap : 0

    implicitWidth: Math.max(220 + levelsWidth, row.implicitWidth + levelsWidth + stop.implicitWidth + Theme.margin + 2 * Theme.wide, note.visible ? Math.min(note.implicitWidth, 360) + 2 * Theme.margin : 0)
    implicitHeight: note.visible ? 62 + note.height : 54

    Row {
        id: row
        anchors { left: parent.left; leftMargin: Theme.margin }
        height: 54
        spacing: Theme.wide
        Rectangle {
            anchors.verticalCenter: parent.verticalCenter
            width: 10
            height: 10
            radius: 5
            color: screen.app.captureEnded ? Theme.warning : Theme.record
            opacity: screen.app.stopping ? 0.4 : 1
        }
        Label {
            objectName: "elapsed"
            anchors.verticalCenter: parent.verticalCenter
            text: screen.app.stopping ? qsTr("Finishing...") : screen.app.elapsed
            font.pixelSize: screen.app.stopping ? Theme.body : Theme.headline
            font.weight: Font.DemiBold
        }
    }
    Row {
        id: levels
        anchors { right: stop.left; rightMargin: Theme.wide; verticalCenter: row.verticalCenter }
        visible: !screen.app.stopping
        spacing: 3
        LevelMeter {
            objectName: "systemLevel"
            width: 5
            height: 30
            meter: screen.meters.system
            name: qsTr("System audio level")
        }
        LevelMeter {
            objectName: "microphoneLevel"
            width: 5
            height: 30
            meter: screen.meters.microphone
            name: qsTr("Microphone level")
        }
    }
    PushButton {
        id: stop
        objectName: "stop"
        anchors { right: parent.right; rightMargin: Theme.wide; verticalCenter: row.verticalCenter }
        focus: true
        prominent: true
        fill: Theme.stop
        fillHover: Theme.stopHover
        fillPressed: Theme.stopPressed
        ink: Theme.stopInk
        symbol: "stop.fill"
        text: qsTr("Stop")
        help: qsTr("Stop (Ctrl+S)")
        enabled: screen.guard.stop
        onClicked: screen.app.stop()
    }
    Label {
        id: note
        anchors { horizontalCenter: parent.horizontalCenter; top: row.bottom }
        visible: text !== "" && !screen.app.stopping
        width: parent.width
        text: screen.app.recordingNote
        wrapMode: Text.Wrap
        horizontalAlignment: Text.AlignHCenter
        font.pixelSize: Theme.caption
        color: screen.app.captureEnded ? Theme.warning : Theme.secondaryText
    }
    Shortcut {
        sequence: "Ctrl+S"
        autoRepeat: false
        enabled: screen.guard.stop
        onActivated: screen.app.stop()
    }
}
