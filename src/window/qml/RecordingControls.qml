import QtQuick
import Vantro.Native

// What is to be recorded, and the record button.
FocusScope {
    id: screen

    required property MainModel app
    required property DisplayChoice displays
    required property ActionGuard guard
    required property LevelMeters meters
    required property DeviceChoice microphones
    required property DeviceChoice cameras
    required property CameraView camera

    implicitWidth: 340
    // The desktop remembers what was chosen in its dialog; this asks for another choice.
    readonly property bool canChooseAnew: guard.desktopAsks && guard.modeMissing === ""

    implicitHeight: 120 + (displayBox.visible ? displayBox.height + Theme.gap : 0) + (anew.visible ? anew.height + Theme.gap : 0) + (note.visible ? note.height + Theme.gap : 0) + (ownWindows.visible ? ownWindows.height + Theme.gap : 0) + (sourceNote.visible ? sourceNote.height + Theme.gap : 0) + (picture.visible ? picture.height + Theme.gap : 0)

    SegmentedPicker {
        id: modes
        objectName: "captureModes"
        focus: true
        anchors { left: parent.left; right: parent.right; top: parent.top; margins: Theme.wide }
        help: qsTr("Capture mode")
        choices: [
            { label: qsTr("Screen"), symbol: "rectangle.dashed" },
            { label: qsTr("Window"), symbol: "macwindow" },
            { label: qsTr("Area"), symbol: "crop" }
        ]
        current: screen.app.captureMode
        onPicked: index => screen.app.captureMode = index
    }
    ChoiceBox {
        id: displayBox
        objectName: "displays"
        anchors { left: modes.left; right: modes.right; top: modes.bottom; topMargin: Theme.gap }
        visible: screen.app.captureMode === 0 && screen.displays.names.length > 1
        help: qsTr("Display")
        model: screen.displays.names
        currentIndex: screen.displays.current
        onActivated: index => screen.displays.current = index
    }
    PushButton {
        id: anew
        objectName: "chooseAnew"
        anchors { horizontalCenter: modes.horizontalCenter; top: modes.bottom; topMargin: Theme.gap }
        visible: screen.canChooseAnew
        text: screen.app.captureMode === 1 ? qsTr("Choose a window…") : qsTr("Choose a screen…")
        help: qsTr("Record, and choose anew in your desktop's dialog")
        enabled: screen.guard.record
        onClicked: screen.app.chooseAnew()
    }
    Label {
        id: note
        objectName: "modeMissing"
        anchors { left: modes.left; right: modes.right; top: displayBox.visible ? displayBox.bottom : modes.bottom; topMargin: Theme.gap }
        visible: text !== ""
        text: screen.guard.modeMissing
        wrapMode: Text.Wrap
        horizontalAlignment: Text.AlignHCenter
        color: Theme.warning
    }
    Label {
        id: ownWindows
        objectName: "ownWindows"
        anchors { left: modes.left; right: modes.right; top: anew.visible ? anew.bottom : displayBox.visible ? displayBox.bottom : modes.bottom; topMargin: Theme.gap }
        visible: text !== ""
        text: screen.guard.ownWindowsNote
        wrapMode: Text.Wrap
        horizontalAlignment: Text.AlignHCenter
        font.pixelSize: Theme.caption
        color: Theme.secondaryText
    }
    Label {
        id: sourceNote
        objectName: "sourceNote"
        anchors { left: modes.left; right: modes.right; top: note.visible ? note.bottom : ownWindows.visible ? ownWindows.bottom : anew.visible ? anew.bottom : displayBox.visible ? displayBox.bottom : modes.bottom; topMargin: Theme.gap }
        visible: text !== ""
        text: {
            const lines = []
            if (microphone.checked && screen.microphones.missing !== "")
                lines.push(screen.microphones.missing)
            if (screen.meters.microphone.silent)
                lines.push(qsTr("The microphone is silent."))
            if (webcam.checked && screen.cameras.missing !== "")
                lines.push(screen.cameras.missing)
            if (screen.app.clicksNote !== "")
                lines.push(screen.app.clicksNote)
            return lines.join("\n")
        }
        wrapMode: Text.Wrap
        horizontalAlignment: Text.AlignHCenter
        font.pixelSize: Theme.caption
        color: Theme.warning
    }
    CameraPicture {
        id: picture
        objectName: "cameraPicture"
        anchors { horizontalCenter: parent.horizontalCenter; bottom: record.top; bottomMargin: Theme.wide }
        width: 192
        height: 144
        camera: screen.camera
    }
    Row {
        anchors { left: parent.left; leftMargin: Theme.wide - 4; verticalCenter: record.verticalCenter }
        SourceToggle {
            objectName: "systemAudio"
            implicitWidth: 32
            meter: screen.meters.system
            meterName: qsTr("System audio level")
            on: screen.app.systemAudio
            missing: screen.guard.systemAudioMissing
            symbolOn: "speaker.wave.2.fill"
            symbolOff: "speaker.slash.fill"
            helpOn: qsTr("System audio on")
            helpOff: qsTr("System audio off")
            onSwitched: on => screen.app.systemAudio = on
        }
        SourceToggle {
            id: microphone
            objectName: "microphone"
            implicitWidth: 32
            meter: screen.meters.microphone
            meterName: qsTr("Microphone level")
            on: screen.app.microphone
            missing: screen.guard.microphoneMissing
            symbolOn: "mic.fill"
            symbolOff: "mic.slash.fill"
            helpOn: qsTr("Microphone on")
            helpOff: qsTr("Microphone off")
            onSwitched: on => screen.app.microphone = on
        }
        DeviceMenuButton {
            objectName: "microphoneMenu"
            choice: screen.microphones
            help: qsTr("Choose microphone")
            enabled: screen.guard.microphoneMissing === ""
        }
        SourceToggle {
            id: webcam
            objectName: "webcam"
            implicitWidth: 32
            on: screen.app.webcam
            missing: screen.guard.webcamMissing
            symbolOn: "video.fill"
            symbolOff: "video.slash.fill"
            helpOn: qsTr("Webcam on")
            helpOff: qsTr("Webcam off")
            onSwitched: on => screen.app.webcam = on
        }
        DeviceMenuButton {
            objectName: "webcamMenu"
            choice: screen.cameras
            help: qsTr("Choose camera")
            enabled: screen.guard.webcamMissing === ""
        }
    }
    SymbolButton {
        id: record
        objectName: "record"
        anchors { horizontalCenter: parent.horizontalCenter; bottom: parent.bottom; bottomMargin: 14 }
        implicitWidth: 48
        implicitHeight: 48
        symbol: "record.circle.fill"
        symbolSize: 34
        ink: down ? Theme.recordPressed : hovered ? Theme.recordHover : Theme.record
        help: qsTr("Record (Ctrl+R)")
        enabled: screen.guard.record
        onClicked: screen.app.record()
    }
    Row {
        anchors { right: parent.right; rightMargin: Theme.wide - 4; verticalCenter: record.verticalCenter }
        spacing: 2
        PushButton {
            objectName: "openProject"
            anchors.verticalCenter: parent.verticalCenter
            text: qsTr("Open Project")
            font.pixelSize: Theme.body
            leftPadding: 9
            rightPadding: 9
            enabled: screen.guard.openProject
            help: qsTr("Open Project (Ctrl+O)")
            onClicked: screen.app.openProject()
        }
        SymbolButton {
            id: options
            objectName: "options"
            implicitWidth: 22
            symbol: "ellipsis"
            symbolSize: 16
            ink: Theme.secondaryText
            help: qsTr("Options")
            onClicked: {
                const place = options.mapToGlobal(0, options.height)
                screen.app.showOptions(place.x, place.y)
            }
        }
    }
    Shortcut {
        sequence: "Ctrl+R"
        autoRepeat: false
        enabled: screen.guard.record
        onActivated: screen.app.record()
    }
    Shortcut {
        sequence: "Ctrl+O"
        autoRepeat: false
        enabled: screen.guard.openProject
        onActivated: screen.app.openProject()
    }
}
