import QtQuick
import QtQuick.Templates as T
import QtQuick.Window

// One window of the picker: icon, application, title.
T.ItemDelegate {
    id: row

    required property int index
    required property string applicationName
    required property string title
    required property string bundleIdentifier
    required property string iconName
    property bool isCurrent: false

    height: 48
    hoverEnabled: true
    focusPolicy: Qt.NoFocus
    Accessible.name: title !== "" ? qsTr("%1, %2").arg(applicationName).arg(title) : applicationName
    Accessible.role: Accessible.ListItem
    Accessible.focusable: true
    Accessible.focused: isCurrent
    Accessible.onPressAction: if (enabled) clicked()

    contentItem: Item {
        Image {
            id: icon
            objectName: "windowIcon"
            anchors { left: parent.left; leftMargin: Theme.gap; verticalCenter: parent.verticalCenter }
            width: 32
            height: 32
            sourceSize {
                width: Math.round(32 * Screen.devicePixelRatio)
                height: Math.round(32 * Screen.devicePixelRatio)
            }
            source: "image://application/" + encodeURIComponent(row.bundleIdentifier) + "/" + encodeURIComponent(row.applicationName) + "/" + row.iconName
        }
        Column {
            anchors { left: icon.right; leftMargin: Theme.wide; right: parent.right; rightMargin: Theme.gap; verticalCenter: parent.verticalCenter }
            spacing: 1
            Label {
                width: parent.width
                text: row.applicationName
                elide: Text.ElideRight
                font.weight: Font.Medium
                Accessible.ignored: true
            }
            Label {
                width: parent.width
                visible: text !== ""
                text: row.title
                elide: Text.ElideMiddle
                font.pixelSize: Theme.caption
                color: Theme.secondaryText
                Accessible.ignored: true
            }
        }
    }
    background: Rectangle {
        radius: Theme.radius
        color: row.down ? Theme.pressed : row.hovered ? Theme.hover : "transparent"
        border.width: row.isCurrent ? 2 : 0
        border.color: Theme.focusRing
    }
}
