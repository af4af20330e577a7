import QtQuick

// A group of settings under its name.
Column {
    id: section

    required property string title
    property bool resettable: true
    property bool isLast: false // nothing below to be divided from
    default property alias content: body.data
    signal reset()

    leftPadding: Theme.wide
    rightPadding: Theme.wide
    Accessible.role: Accessible.Grouping
    Accessible.name: title

    Item {
        width: section.width - 2 * Theme.wide
        height: 38
        Label {
            anchors { left: parent.left; right: resetButton.left; verticalCenter: parent.verticalCenter }
            text: section.title
            elide: Text.ElideRight
            font.weight: Font.DemiBold
        }
        SymbolButton {
            id: resetButton
            objectName: section.objectName + "Reset"
            anchors { right: parent.right; rightMargin: -4; verticalCenter: parent.verticalCenter }
            implicitWidth: 26
            implicitHeight: 26
            visible: section.resettable
            symbol: "arrow.counterclockwise"
            symbolSize: 14
            ink: Theme.secondaryText
            help: qsTr("Reset %1").arg(section.title)
            onClicked: section.reset()
        }
    }
    Column {
        id: body
        width: section.width - 2 * Theme.wide
        spacing: Theme.gap
    }
    Item { width: 1; height: Theme.wide }
    Rectangle {
        x: 0
        visible: !section.isLast
        width: section.width - 2 * Theme.wide
        height: 1
        color: Theme.border
    }
}
