import QtQuick

// A setting behind its name. A note below may say more about it.
Item {
    id: row

    required property string label
    property string note: ""
    property color noteColor: Theme.secondaryText
    property string noteName: "" // of the note as an object
    default property alias content: place.data

    width: parent ? parent.width : 0
    implicitHeight: place.height + (below.visible ? below.height + Theme.tight : 0)

    Label {
        anchors { left: parent.left; right: place.left; rightMargin: Theme.gap }
        height: Theme.controlHeight
        verticalAlignment: Text.AlignVCenter
        text: row.label
        elide: Text.ElideRight
        Accessible.ignored: true
    }
    Item {
        id: place
        anchors { left: parent.left; leftMargin: 200; right: parent.right }
        height: Math.max(Theme.controlHeight, childrenRect.height)
    }
    Label {
        id: below
        objectName: row.noteName
        anchors { left: place.left; right: parent.right; top: place.bottom; topMargin: Theme.tight }
        visible: text !== ""
        text: row.note
        wrapMode: Text.Wrap
        font.pixelSize: Theme.caption
        color: row.noteColor
    }
}
