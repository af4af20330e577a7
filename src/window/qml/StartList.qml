import QtQuick
import QtQuick.Templates as T

// A titled list of the start screen, of three rows at most that are seen at once.
FocusScope {
    id: list

    required property string title
    required property string listName
    property alias model: view.model
    property alias delegate: view.delegate
    property real rowHeight: 52
    readonly property int shownRows: Math.min(view.count, 3)
    signal opened(int row)
    signal removed(int row)

    implicitHeight: view.count > 0 ? header.height + shownRows * rowHeight : 0
    visible: view.count > 0

    Label {
        id: header
        anchors { left: parent.left; leftMargin: Theme.gap }
        height: 26
        verticalAlignment: Text.AlignVCenter
        text: list.title
        font.pixelSize: Theme.caption
        font.weight: Font.DemiBold
        color: Theme.secondaryText
    }
    ListView {
        id: view
        objectName: list.listName
        anchors { left: parent.left; right: parent.right; top: header.bottom; bottom: parent.bottom }
        clip: true
        focus: true
        activeFocusOnTab: true
        boundsBehavior: Flickable.StopAtBounds
        keyNavigationEnabled: true
        highlightMoveDuration: 0
        Accessible.role: Accessible.List
        Accessible.name: list.title
        Keys.onReturnPressed: list.opened(currentIndex)
        Keys.onEnterPressed: list.opened(currentIndex)
        Keys.onSpacePressed: list.opened(currentIndex)
        Keys.onDeletePressed: list.removed(currentIndex)
        T.ScrollBar.vertical: ScrollBar {}
    }
}
