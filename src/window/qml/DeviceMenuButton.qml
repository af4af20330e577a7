import QtQuick
import Vantro.Native

// Opens the menu of the devices that a source can be recorded from.
SymbolButton {
    id: button

    required property DeviceChoice choice

    implicitWidth: 14
    symbol: "chevron.down"
    symbolSize: 10
    ink: Theme.secondaryText
    tip: choice.missing !== "" ? choice.missing : choice.names[choice.current]
    Accessible.role: Accessible.ButtonMenu
    Accessible.description: enabled ? choice.names[choice.current] : qsTr("Unavailable")
    onClicked: {
        const place = button.mapToGlobal(0, button.height)
        button.choice.showMenu(place.x, place.y)
    }
}
