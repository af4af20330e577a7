import QtQuick

// Something is being fetched.
Item {
    id: spinner

    property bool running: true
    property color ink: Theme.secondaryText

    width: 24
    height: 24
    Accessible.role: Accessible.Indicator
    Accessible.name: qsTr("Loading")

    Repeater {
        model: 8
        // qmllint disable unqualified
        Rectangle {
            required property int index
            x: 10.5
            y: 1
            width: 3
            height: 6
            radius: 1.5
            color: spinner.ink
            opacity: 0.15 + 0.85 * ((index + 8 - step.value) % 8) / 7
            transform: Rotation { origin.x: 1.5; origin.y: 11; angle: index * 45 }
        }
    }
    // qmllint enable unqualified
    Timer {
        id: step
        property int value: 0
        interval: 100
        repeat: true
        running: spinner.running
        onTriggered: value = (value + 7) % 8
    }
}
