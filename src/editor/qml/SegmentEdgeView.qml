import QtQuick

// An edge that the keyboard reaches. The bar paints it.
TimeHandle {
    id: edge

    required property int index
    required property bool shown
    required property real startX
    required property string part
    required property real handleWidth

    visible: shown
    x: startX - width / 2
    width: handleWidth
    corner: 2
    onWanted: to => actions.keys.setEdge(index, to)
}
