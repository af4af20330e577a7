import QtQuick
import QtQuick.Templates as T
import QtQuick.Window
import Vantro.Native

// The settings of the film: first those of what is selected, then those of the whole.
Rectangle {
    id: sidebar

    required property SidebarModel model
    signal keysReturned()

    implicitWidth: 272
    color: Theme.window
    Accessible.role: Accessible.Pane
    Accessible.name: qsTr("Settings")

    Flickable {
        id: page
        objectName: "sidebarPage"
        anchors { fill: parent; leftMargin: 1 }
        clip: true
        contentHeight: sections.height
        boundsBehavior: Flickable.StopAtBounds
        interactive: false // a drag is for the sliders
        T.ScrollBar.vertical: ScrollBar {}

        function scroll(by: real) {
            contentY = Math.max(0, Math.min(contentY + by, contentHeight - height))
        }
        onContentHeightChanged: scroll(0)
        onHeightChanged: scroll(0)

        Column {
            id: sections
            width: page.width
            ZoomSection {
                width: parent.width
                visible: sidebar.model.zoom.present
                onVisibleChanged: page.contentY = 0
                sidebar: sidebar.model
            }
            SegmentSection {
                width: parent.width
                visible: sidebar.model.segment.present
                onVisibleChanged: page.contentY = 0
                sidebar: sidebar.model
            }
            BackgroundSection {
                width: parent.width
                sidebar: sidebar.model
            }
            FrameSection {
                width: parent.width
                sidebar: sidebar.model
            }
            PointerSection {
                width: parent.width
                sidebar: sidebar.model
            }
            AllZoomsSection {
                width: parent.width
                visible: sidebar.model.allZooms.count > 0
                sidebar: sidebar.model
            }
            WebcamSection {
                width: parent.width
                visible: sidebar.model.webcam.present
                sidebar: sidebar.model
            }
            SoundSection {
                width: parent.width
                visible: sidebar.model.sound.hasSystemAudio || sidebar.model.sound.hasMicrophone
                sidebar: sidebar.model
            }
        }
        WheelHandler {
            onWheel: event => page.scroll(-event.angleDelta.y / 120 * 60)
        }
    }
    DropArea {
        anchors.fill: parent
        onEntered: drag => drag.accepted = sidebar.pictureOf(drag) !== ""
        onDropped: drop => sidebar.model.background.usePicture(sidebar.pictureOf(drop))
    }
    Rectangle {
        anchors { left: parent.left; top: parent.top; bottom: parent.bottom }
        width: 1
        color: Theme.border
    }
    // What has the keyboard is to be seen.
    Connections {
        target: sidebar.Window.window
        function onActiveFocusItemChanged() { sidebar.showFocus() }
    }

    function pictureOf(drag: var): string {
        const picture = drag.urls.find(url => /\.(jpe?g|png|webp)$/i.test(url))
        return picture ? picture.toString() : ""
    }
    function showFocus() {
        const below = 32 // what belongs to a field stands below it
        const item = sidebar.Window.activeFocusItem
        if (!item)
            return
        for (let above = item; above !== sections; above = above.parent)
            if (!above)
                return
        const place = item.mapToItem(page, 0, 0)
        if (place.y < Theme.gap)
            page.scroll(place.y - 44)
        else if (place.y + item.height > page.height - below)
            page.scroll(place.y + item.height - page.height + below)
    }
}
