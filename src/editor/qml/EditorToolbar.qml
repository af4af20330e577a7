import QtQuick
import Vantro.Native

// The recording's name, the project actions and the export.
Rectangle {
    id: toolbar

    required property EditorModel editor
    required property EditorActions actions
    required property ActionGuard guard

    implicitHeight: 52
    color: Theme.window

    TextBox {
        id: name
        objectName: "recordingName"
        anchors { left: parent.left; leftMargin: Theme.wide; right: notice.left; rightMargin: Theme.gap; verticalCenter: parent.verticalCenter }
        placeholderText: qsTr("Recording Name")
        font.weight: Font.DemiBold
        color: whole.visible ? "transparent" : Theme.text
        text: toolbar.editor.recordingName
        onTextEdited: toolbar.editor.recordingName = text
        // A name too long to be seen whole shows its beginning.
        onTextChanged: if (!activeFocus) cursorPosition = 0
        onActiveFocusChanged: cursorPosition = activeFocus ? length : 0
        onAccepted: focus = false
    }
    Label {
        id: whole
        anchors { fill: name; leftMargin: name.leftPadding; rightMargin: name.rightPadding }
        visible: !name.activeFocus && implicitWidth > width
        verticalAlignment: Text.AlignVCenter
        text: name.text
        font: name.font
        elide: Text.ElideRight
        Accessible.ignored: true
    }
    Label {
        id: notice
        objectName: "notice"
        anchors { right: actions.left; rightMargin: Theme.wide; verticalCenter: parent.verticalCenter }
        width: Math.min(implicitWidth, 320)
        elide: Text.ElideMiddle
        text: toolbar.editor.working ? qsTr("Working...") : toolbar.editor.notice
        color: Theme.secondaryText
        font.pixelSize: Theme.caption
    }
    Row {
        id: actions
        anchors { right: parent.right; rightMargin: Theme.wide; verticalCenter: parent.verticalCenter }
        spacing: Theme.gap
        Row {
            SymbolButton {
                objectName: "undo"
                implicitHeight: Theme.controlHeight
                symbol: "arrow.uturn.backward"
                ink: Theme.secondaryText
                help: qsTr("%1 (Ctrl+Z)").arg(toolbar.actions.undoName)
                enabled: toolbar.guard.edit && toolbar.actions.canUndo
                onClicked: toolbar.actions.undo()
            }
            SymbolButton {
                objectName: "redo"
                implicitHeight: Theme.controlHeight
                symbol: "arrow.uturn.forward"
                ink: Theme.secondaryText
                help: qsTr("%1 (Ctrl+Shift+Z)").arg(toolbar.actions.redoName)
                enabled: toolbar.guard.edit && toolbar.actions.canRedo
                onClicked: toolbar.actions.redo()
            }
        }
        PushButton {
            objectName: "newRecording"
            text: qsTr("New Recording")
            help: qsTr("New Recording (Ctrl+N)")
            enabled: toolbar.guard.edit
            onClicked: toolbar.editor.newRecording()
        }
        PushButton {
            objectName: "openProject"
            text: qsTr("Open Project")
            help: qsTr("Open Project (Ctrl+O)")
            enabled: toolbar.guard.openProject
            onClicked: toolbar.editor.openProject()
        }
        PushButton {
            objectName: "saveProject"
            text: qsTr("Save Project")
            help: qsTr("Save Project (Ctrl+S), Save As (Ctrl+Shift+S)")
            enabled: toolbar.guard.write
            onClicked: toolbar.editor.saveProject()
        }
        PushButton {
            id: exportButton
            objectName: "export"
            visible: !toolbar.editor.exporting
            prominent: true
            text: qsTr("Export")
            symbol: "square.and.arrow.up"
            help: qsTr("Export (Ctrl+E)")
            enabled: toolbar.guard.write
            onClicked: popover.opened ? popover.close() : popover.open()
            ExportPopover {
                id: popover
                editor: toolbar.editor
                x: exportButton.mirrored ? 0 : exportButton.width - width
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
    ExportDone {
        anchors { horizontalCenter: parent.horizontalCenter; top: parent.bottom; topMargin: Theme.gap }
        editor: toolbar.editor
    }
    Shortcut {
        sequence: "Ctrl+N"
        autoRepeat: false
        enabled: toolbar.guard.edit
        onActivated: toolbar.editor.newRecording()
    }
    Shortcut {
        sequence: "Ctrl+O"
        autoRepeat: false
        enabled: toolbar.guard.openProject
        onActivated: toolbar.editor.openProject()
    }
    Shortcut {
        sequence: "Ctrl+S"
        autoRepeat: false
        enabled: toolbar.guard.write
        onActivated: toolbar.editor.saveProject()
    }
    Shortcut {
        sequence: "Ctrl+Shift+S"
        autoRepeat: false
        enabled: toolbar.guard.write
        onActivated: toolbar.editor.saveProjectAs()
    }
    Shortcut {
        sequence: "Ctrl+E"
        autoRepeat: false
        enabled: toolbar.guard.write
        onActivated: popover.open()
    }
}
