import QtQuick

// Switches one source of a recording on and off.
SymbolButton {
    id: toggle

    required property bool on
    required property string onSymbol
    required property string offSymbol
    required property string subject
    signal switched(bool on)

    symbol: on ? onSymbol : offSymbol
    help: subject + (on ? " on" : " off")
    ink: on ? Theme.text : Theme.secondaryText
    Accessible.role: Accessible.CheckBox
    Accessible.checkable: true
    Accessible.checked: on
    onClicked: switched(!on)
}
