import QtQuick

// The recording's name, the project actions and the export.
Rectangle {
    id: toolbar

    required property QtObject app
    required property QtObject editor
    readonly property bool free: !editor.exporting && !editor.busy

    implicitHeight: 52
    color: Theme.window

    TextBox {
        id: name
        objectName: "recordingName"
        anchors { left: parent.left; leftMargin: Theme.wide; right: notice.left; rightMargin: Theme.gap; verticalCenter: parent.verticalCenter }
        placeholderText: "Recording Name"
        font.weight: Font.DemiBold
        text: toolbar.editor.recordingName
        onTextEdited: toolbar.editor.recordingName = text
        onAccepted: focus = false
    }
    Label {
        id: notice
        objectName: "notice"
        anchors { right: actions.left; rightMargin: Theme.wide; verticalCenter: parent.verticalCenter }
        width: Math.min(implicitWidth, 320)
        elide: Text.ElideMiddle
        text: toolbar.editor.working ? "Working..." : toolbar.editor.notice
        color: Theme.secondaryText
        font.pixelSize: Theme.caption
    }
    Row {
        id: actions
        anchors { right: parent.right; rightMargin: Theme.wide; verticalCenter: parent.verticalCenter }
        spacing: Theme.gap
        PushButton {
            objectName: "newRecording"
            text: "New Recording"
            help: "New Recording (Ctrl+N)"
            onClicked: toolbar.editor.newRecording()
        }
        PushButton {
            objectName: "openProject"
            text: "Open Project"
            help: "Open Project (Ctrl+O)"
            enabled: toolbar.free
            onClicked: toolbar.editor.openProject()
        }
        PushButton {
            objectName: "saveProject"
            text: "Save Project"
            help: "Save Project (Ctrl+S)"
            enabled: toolbar.free
            onClicked: toolbar.editor.saveProject()
        }
        PushButton {
            id: exportButton
            objectName: "export"
            visible: !toolbar.editor.exporting
            prominent: true
            text: "Export"
            symbol: "square.and.arrow.up"
            help: "Export (Ctrl+E)"
            enabled: toolbar.free
            onClicked: popover.opened ? popover.close() : popover.open()
            ExportPopover {
                id: popover
                editor: toolbar.editor
                x: exportButton.width - width
                y: exportButton.height + 6
            }
        }
        ExportProgress {
            visible: toolbar.editor.exporting
            editor: toolbar.editor
        }
    }
    Rectangle {
        anchors { left: parent.left; right: parent.right; bottom: parent.bottom }
        height: 1
        color: Theme.border
    }
    Shortcut {
        sequence: "Ctrl+N"
        autoRepeat: false
        onActivated: toolbar.editor.newRecording()
    }
    Shortcut {
        sequence: "Ctrl+O"
        autoRepeat: false
        enabled: toolbar.free
        onActivated: toolbar.editor.openProject()
    }
    Shortcut {
        sequence: "Ctrl+S"
        autoRepeat: false
        enabled: toolbar.free
        onActivated: toolbar.editor.saveProject()
    }
    Shortcut {
        sequence: "Ctrl+E"
        autoRepeat: false
        enabled: toolbar.free
        onActivated: popover.open()
    }
}
