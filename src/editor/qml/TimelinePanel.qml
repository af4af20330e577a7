import QtQuick
import Vantro.Native

// What stands under the preview: the time line, its tools and the transport.
Item {
    id: panel

    required property EditorModel editor
    required property EditorActions actions
    required property ActionGuard guard
    readonly property PlayerTimeObserver transport: editor.preview.transport
    signal taken()

    implicitHeight: bars.implicitHeight + controls.implicitHeight

    TimelineBarsGroup {
        id: bars
        anchors { left: parent.left; right: parent.right; top: parent.top }
        actions: panel.actions
        transport: panel.transport
        onTaken: panel.taken()
    }
    TimelineTools {
        anchors { left: parent.left; right: controls.left; leftMargin: Theme.gap; verticalCenter: controls.verticalCenter }
        actions: panel.actions
        guard: panel.guard
        onAnswered: panel.taken()
    }
    TransportControls {
        id: controls
        anchors { bottom: parent.bottom; horizontalCenter: parent.horizontalCenter }
        transport: panel.transport
    }
    SymbolButton {
        objectName: "mute"
        anchors { left: controls.right; verticalCenter: controls.verticalCenter }
        symbol: panel.editor.preview.muted ? "speaker.slash.fill" : "speaker.wave.2.fill"
        symbolSize: Theme.title2
        enabled: panel.editor.preview.hasSound
        ink: Theme.secondaryText
        help: panel.editor.preview.muted ? qsTr("Sound on in the preview") : qsTr("Sound off in the preview")
        onClicked: panel.editor.preview.muted = !panel.editor.preview.muted
    }
    Row {
        anchors { right: parent.right; rightMargin: Theme.gap; verticalCenter: controls.verticalCenter }
        SymbolButton {
            objectName: "zoomOut"
            symbol: "minus.magnifyingglass"
            ink: Theme.secondaryText
            help: qsTr("Show more of the timeline (-)")
            enabled: panel.actions.timeline.viewSpan < 1
            onClicked: panel.actions.timeline.magnifyHere(0.5)
        }
        SymbolButton {
            objectName: "fit"
            symbol: "arrow.left.and.right"
            ink: Theme.secondaryText
            help: qsTr("Show the whole timeline (0)")
            enabled: panel.actions.timeline.viewSpan < 1
            onClicked: panel.actions.timeline.fit()
        }
        SymbolButton {
            objectName: "zoomIn"
            symbol: "plus.magnifyingglass"
            ink: Theme.secondaryText
            help: qsTr("Show less of the timeline (+)")
            onClicked: panel.actions.timeline.magnifyHere(2)
        }
        SymbolButton {
            objectName: "help"
            symbol: "questionmark.circle"
            ink: Theme.secondaryText
            help: qsTr("Keyboard (?)")
            onClicked: panel.actions.helpWanted()
        }
    }
}
