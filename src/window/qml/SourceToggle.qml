import QtQuick
import Vantro.Native

// Switches one source of a recording on and off; a source that is missing says why.
SymbolButton {
    id: toggle

    required property bool on
    required property string missing // why the source cannot be recorded; empty: it can
    required property string symbolOn
    required property string symbolOff
    required property string helpOn
    required property string helpOff
    property SourceMeter meter: null // of what is switched on
    property string meterName: ""
    signal switched(bool on)

    enabled: missing === ""
    checkable: true
    checked: on && enabled
    symbol: checked ? symbolOn : symbolOff
    help: checked ? helpOn : helpOff
    tip: missing !== "" ? missing : help
    ink: checked ? Theme.text : Theme.secondaryText
    Accessible.description: missing
    onClicked: switched(!on)

    LevelMeter {
        objectName: toggle.objectName + "Level"
        anchors { horizontalCenter: parent.horizontalCenter; bottom: parent.bottom; bottomMargin: -1 }
        width: 26
        height: 3
        meter: toggle.meter
        name: toggle.meterName
    }
}
