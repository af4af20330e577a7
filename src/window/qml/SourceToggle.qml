import QtQuick

// Switches one source of a recording on and off; a source that is missing says why.
Item {
    id: toggle

    required property bool on
    required property string missing // why the source cannot be recorded; empty: it can
    required property string symbolOn
    required property string symbolOff
    required property string helpOn
    required property string helpOff
    signal switched(bool on)

    readonly property bool records: on && missing === ""
    readonly property string symbol: button.symbol
    readonly property string help: missing !== "" ? missing : button.help

    implicitWidth: button.implicitWidth
    implicitHeight: button.implicitHeight

    SymbolButton {
        id: button
        objectName: toggle.objectName + "Button"
        anchors.fill: parent
        enabled: toggle.missing === ""
        symbol: toggle.records ? toggle.symbolOn : toggle.symbolOff
        help: toggle.records ? toggle.helpOn : toggle.helpOff
        ink: toggle.records ? Theme.text : Theme.secondaryText
        checkable: true
        checked: toggle.records
        Accessible.description: toggle.missing
        onClicked: toggle.switched(!toggle.on)
    }
    // A disabled button knows of no pointer over it.
    HoverHandler {
        id: pointer
        enabled: toggle.missing !== ""
    }
    Tip {
        objectName: toggle.objectName + "Tip"
        text: toggle.missing
        shown: pointer.hovered
    }
}
