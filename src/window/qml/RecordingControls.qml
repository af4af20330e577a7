import QtQuick

// What is to be recorded, and the record button.
FocusScope {
    id: screen

    required property QtObject app

    implicitWidth: 340
    implicitHeight: 120

    SegmentedPicker {
        id: modes
        objectName: "captureModes"
        focus: true
        anchors { left: parent.left; right: parent.right; top: parent.top; margins: Theme.wide }
        help: "Capture mode"
        choices: [
            { label: "Screen", symbol: "rectangle.dashed" },
            { label: "Window", symbol: "macwindow" },
            { label: "Area", symbol: "crop" }
        ]
        current: screen.app.captureMode
        onPicked: index => screen.app.captureMode = index
    }
    Row {
        anchors { left: parent.left; leftMargin: Theme.wide - 4; verticalCenter: record.verticalCenter }
        spacing: 2
        SourceToggle {
            objectName: "systemAudio"
            on: screen.app.systemAudio
            onSymbol: "speaker.wave.2.fill"
            offSymbol: "speaker.slash.fill"
            subject: "System audio"
            onSwitched: on => screen.app.systemAudio = on
        }
        SourceToggle {
            objectName: "microphone"
            on: screen.app.microphone
            onSymbol: "mic.fill"
            offSymbol: "mic.slash.fill"
            subject: "Microphone"
            onSwitched: on => screen.app.microphone = on
        }
        SourceToggle {
            objectName: "webcam"
            on: screen.app.webcam
            onSymbol: "video.fill"
            offSymbol: "video.slash.fill"
            subject: "Webcam"
            onSwitched: on => screen.app.webcam = on
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
        help: "Record (Ctrl+R)"
        onClicked: screen.app.record()
    }
    Row {
        anchors { right: parent.right; rightMargin: Theme.wide - 4; verticalCenter: record.verticalCenter }
        spacing: 2
        PushButton {
            objectName: "openProject"
            anchors.verticalCenter: parent.verticalCenter
            text: "Open Project"
            font.pixelSize: Theme.body
            leftPadding: 9
            rightPadding: 9
            enabled: !screen.app.busy
            help: "Open Project (Ctrl+O)"
            onClicked: screen.app.openProject()
        }
        SymbolButton {
            id: options
            objectName: "options"
            implicitWidth: 22
            symbol: "ellipsis"
            symbolSize: 16
            ink: Theme.secondaryText
            help: "Options"
            onClicked: {
                const place = options.mapToGlobal(0, options.height)
                screen.app.showOptions(place.x, place.y)
            }
        }
    }
    Shortcut {
        sequence: "Ctrl+R"
        autoRepeat: false
        onActivated: screen.app.record()
    }
    Shortcut {
        sequence: "Ctrl+O"
        autoRepeat: false
        onActivated: screen.app.openProject()
    }
}
