import QtQuick
import QtQuick.Templates as T
import Vantro.Native

// The list of windows to record one of.
FocusScope {
    id: screen

    required property MainModel app
    required property WindowPickerModel windows
    signal chosen(int row)

    implicitWidth: 400
    implicitHeight: 440

    Label {
        id: header
        anchors { left: parent.left; leftMargin: Theme.margin }
        height: 44
        verticalAlignment: Text.AlignVCenter
        text: qsTr("Select a Window")
        font.pixelSize: Theme.headline
        font.weight: Font.DemiBold
    }
    Rectangle {
        id: divider
        anchors { left: parent.left; right: parent.right; top: header.bottom }
        height: 1
        color: Theme.border
    }
    ListView {
        id: list
        objectName: "windowList"
        anchors { left: parent.left; right: parent.right; top: divider.bottom; bottom: footer.top; margins: Theme.gap }
        clip: true
        focus: true
        model: screen.windows
        currentIndex: 0
        boundsBehavior: Flickable.StopAtBounds
        keyNavigationEnabled: true
        highlightMoveDuration: 0
        Accessible.role: Accessible.List
        Accessible.name: qsTr("Windows")
        Keys.onReturnPressed: if (currentIndex >= 0) screen.chosen(currentIndex)
        Keys.onEnterPressed: if (currentIndex >= 0) screen.chosen(currentIndex)
        Keys.onSpacePressed: if (currentIndex >= 0) screen.chosen(currentIndex)
        // qmllint disable unqualified
        delegate: WindowRow {
            width: list.width
            isCurrent: ListView.isCurrentItem && list.activeFocus
            onClicked: screen.chosen(index)
        }
        // qmllint enable unqualified
        T.ScrollBar.vertical: ScrollBar {}
    }
    Column {
        anchors.centerIn: list
        width: list.width - 2 * Theme.margin
        spacing: Theme.tight
        visible: screen.windows.count === 0
        Spinner {
            anchors.horizontalCenter: parent.horizontalCenter
            visible: screen.windows.loading
            running: visible
        }
        Label {
            objectName: "pickerMessage"
            anchors.horizontalCenter: parent.horizontalCenter
            visible: !screen.windows.loading
            text: screen.windows.loadError !== "" ? qsTr("Could not list windows") : qsTr("No windows available")
            color: screen.windows.loadError !== "" ? Theme.text : Theme.secondaryText
            font.weight: screen.windows.loadError !== "" ? Font.Medium : Font.Normal
        }
        Label {
            objectName: "pickerError"
            width: parent.width
            visible: screen.windows.loadError !== ""
            text: screen.windows.loadError
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
            font.pixelSize: Theme.caption
            color: Theme.secondaryText
        }
    }
    Item {
        id: footer
        anchors { left: parent.left; right: parent.right; bottom: parent.bottom }
        height: 54
        Rectangle {
            width: parent.width
            height: 1
            color: Theme.border
        }
        PushButton {
            objectName: "pickerCancel"
            anchors { right: parent.right; rightMargin: Theme.wide; verticalCenter: parent.verticalCenter }
            text: qsTr("Cancel")
            onClicked: screen.app.cancelPicker()
        }
    }
    Shortcut {
        sequence: "Escape"
        autoRepeat: false
        onActivated: screen.app.cancelPicker()
    }
}
