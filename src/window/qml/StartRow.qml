import QtQuick
import QtQuick.Templates as T
import QtQuick.Window

// A recording or a project that can be opened: perhaps a picture, its name, what is known about it,
// and a button that takes it away.
T.ItemDelegate {
    id: row

    required property string title
    required property string note
    required property string removeSymbol
    required property string removeHelp
    property real removeSymbolSize: 14
    property bool hasPicture: false
    property string pictureName: ""
    property bool faded: false // it cannot be opened
    property bool isCurrent: false
    signal removed()

    hoverEnabled: true
    focusPolicy: Qt.NoFocus
    Accessible.name: qsTr("%1, %2").arg(title).arg(note)
    Accessible.role: Accessible.ListItem
    Accessible.focusable: true
    Accessible.focused: isCurrent
    Accessible.onPressAction: if (enabled) clicked()

    contentItem: Item {
        Rectangle {
            id: frame
            anchors { left: parent.left; leftMargin: Theme.gap; verticalCenter: parent.verticalCenter }
            visible: row.hasPicture
            width: row.hasPicture ? 72 : 0
            height: 40
            radius: 3
            color: Theme.sunken
            Symbol {
                anchors.centerIn: parent
                visible: row.pictureName === ""
                name: "video.fill"
                color: Theme.disabledText
            }
            Image {
                objectName: "recordingPicture"
                anchors.fill: parent
                fillMode: Image.PreserveAspectFit
                source: row.pictureName !== "" ? "image://recording/" + row.pictureName : ""
            }
        }
        Column {
            anchors {
                left: frame.right
                leftMargin: row.hasPicture ? Theme.wide : 0
                right: away.left
                rightMargin: Theme.tight
                verticalCenter: parent.verticalCenter
            }
            spacing: 1
            Label {
                width: parent.width
                text: row.title
                elide: Text.ElideMiddle
                color: row.faded ? Theme.secondaryText : Theme.text
                font.weight: Font.Medium
                font.strikeout: row.faded
                Accessible.ignored: true
            }
            Label {
                width: parent.width
                text: row.note
                elide: Text.ElideMiddle
                font.pixelSize: Theme.caption
                color: row.faded ? Theme.warning : Theme.secondaryText
                Accessible.ignored: true
            }
        }
        SymbolButton {
            id: away
            objectName: "remove"
            anchors { right: parent.right; rightMargin: Theme.tight; verticalCenter: parent.verticalCenter }
            implicitWidth: 28
            implicitHeight: 28
            symbol: row.removeSymbol
            symbolSize: row.removeSymbolSize
            ink: Theme.secondaryText
            help: row.removeHelp
            onClicked: row.removed()
        }
    }
    background: Rectangle {
        radius: Theme.radius
        color: row.down ? Theme.pressed : row.hovered ? Theme.hover : "transparent"
        border.width: row.isCurrent ? 2 : 0
        border.color: Theme.focusRing
    }
}
