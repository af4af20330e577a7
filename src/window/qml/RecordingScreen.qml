import QtQuick
import Vantro.Native

// A recording under way: small, since it stands beside what is being recorded.
FocusScope {
    id: screen

    required property MainModel app
    required property ActionGuard guard
    required property LevelMeters meters

    readonly property real levelsWidth: levels.width > 0 ? levels.width + Theme.gap : 0

    implicitWidth: Math.max(220 + levelsWidth + pause.width, row.implicitWidth + levelsWidth + pause.width + stop.implicitWidth + Theme.margin + 2 * Theme.wide + Theme.gap, note.visible ? Math.min(note.implicitWidth, 360) + 2 * Theme.margin : 0)
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
            readonly property color ink: screen.app.captureEnded ? Theme.warning : Theme.record
            color: screen.app.paused ? "transparent" : ink
            border.color: ink
            border.width: screen.app.paused ? 2 : 0
            opacity: screen.app.stopping ? 0.4 : 1
        }
        Column {
            anchors.verticalCenter: parent.verticalCenter
            // As wide whether it is paused or not, so that a pause moves nothing.
            width: Math.max(elapsed.implicitWidth, pausedText.implicitWidth)
            Label {
                id: elapsed
                objectName: "elapsed"
                text: screen.app.stopping ? qsTr("Finishing...") : screen.app.elapsed
                font.pixelSize: screen.app.stopping ? Theme.body : Theme.headline
                font.weight: Font.DemiBold
                color: screen.app.paused ? Theme.secondaryText : Theme.text
            }
            Label {
                id: pausedText
                objectName: "paused"
                visible: screen.app.paused
                text: qsTr("Paused")
                font.pixelSize: Theme.caption
                color: Theme.secondaryText
            }
        }
    }
    Row {
        id: levels
        anchors { right: pause.left; rightMargin: Theme.gap; verticalCenter: row.verticalCenter }
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
    SymbolButton {
        id: pause
        objectName: "pause"
        anchors { right: stop.left; rightMargin: Theme.gap; verticalCenter: row.verticalCenter }
        symbol: screen.app.paused ? "record.circle.fill" : "pause.fill"
        ink: screen.app.paused ? Theme.record : Theme.text
        help: screen.app.paused ? qsTr("Resume (Ctrl+P)") : qsTr("Pause (Ctrl+P)")
        enabled: screen.guard.stop && !screen.app.captureEnded
        onClicked: screen.app.pauseOrResume()
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
    Shortcut {
        sequence: "Ctrl+P"
        autoRepeat: false
        enabled: pause.enabled
        onActivated: screen.app.pauseOrResume()
    }
}
