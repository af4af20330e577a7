import QtQuick
import QtQuick.Templates as T
import QtQuick.Window
import Vantro.Native

// What recordings begin with, the keys from anywhere, the theme and the language.
Window {
    id: window

    required property SettingsModel settings
    required property KeysModel keys
    required property Appearance appearance

    readonly property int wide: 560

    width: wide
    height: 520
    title: qsTr("Settings")
    color: Theme.window
    flags: Qt.Dialog
    LayoutMirroring.enabled: Application.layoutDirection === Qt.RightToLeft
    LayoutMirroring.childrenInherit: true

    Binding {
        target: Theme
        property: "dark"
        value: window.appearance.dark
    }
    WindowFitter {
        window: window
        wanted: Qt.size(window.wide, Math.min(page.height, Screen.desktopAvailableHeight - 48))
    }
    Flickable {
        id: view
        anchors.fill: parent
        contentHeight: page.height
        boundsBehavior: Flickable.StopAtBounds
        focus: true
        Keys.onEscapePressed: window.close()
        T.ScrollBar.vertical: ScrollBar {}

        Column {
            id: page
            width: view.width

            SettingsSection {
                width: parent.width
                title: qsTr("New Recordings")
                resettable: false

                SettingsChoiceRow {
                    objectName: "frameRate"
                    label: qsTr("Frame rate")
                    choice: window.settings.frameRate
                }
                SettingsChoiceRow {
                    objectName: "countdown"
                    label: qsTr("Countdown")
                    choice: window.settings.countdown
                }
                SettingsRow {
                    label: qsTr("Kept in")
                    note: window.settings.folderProblem
                    noteName: "folderProblem"
                    noteColor: Theme.warning
                    Label {
                        objectName: "folder"
                        anchors { left: parent.left; right: folderButtons.left; rightMargin: Theme.gap }
                        height: Theme.controlHeight
                        verticalAlignment: Text.AlignVCenter
                        text: window.settings.folder
                        elide: Text.ElideMiddle
                        Accessible.name: qsTr("Folder of recordings")
                        Accessible.description: text
                    }
                    Row {
                        id: folderButtons
                        anchors.right: parent.right
                        spacing: Theme.gap
                        SymbolButton {
                            objectName: "usualFolder"
                            implicitWidth: Theme.controlHeight
                            implicitHeight: Theme.controlHeight
                            visible: !window.settings.folderIsUsual
                            symbol: "arrow.counterclockwise"
                            symbolSize: 14
                            help: qsTr("Recordings go to the usual place")
                            onClicked: window.settings.useUsualFolder()
                        }
                        PushButton {
                            objectName: "chooseFolder"
                            text: qsTr("Choose…")
                            help: qsTr("Choose the folder of recordings")
                            onClicked: window.settings.chooseFolder()
                        }
                    }
                }
                SettingsRow {
                    label: qsTr("Look")
                    Tile {
                        id: swatch
                        y: 4
                        anchors.left: parent.left
                        width: window.settings.lookIsUsual ? 0 : 40
                        height: 22
                        visible: !window.settings.lookIsUsual
                        color: window.settings.lookColor
                        picture: window.settings.lookPicture
                    }
                    Label {
                        objectName: "look"
                        anchors {
                            left: swatch.right
                            leftMargin: swatch.visible ? Theme.gap : 0
                            right: usualLook.visible ? usualLook.left : parent.right
                            rightMargin: usualLook.visible ? Theme.gap : 0
                        }
                        height: Math.max(implicitHeight, Theme.controlHeight)
                        verticalAlignment: Text.AlignVCenter
                        text: window.settings.look
                        wrapMode: Text.Wrap
                        color: window.settings.lookIsUsual ? Theme.secondaryText : Theme.text
                        Accessible.name: qsTr("Look of new recordings")
                        Accessible.description: text
                    }
                    SymbolButton {
                        id: usualLook
                        objectName: "usualLook"
                        anchors.right: parent.right
                        implicitWidth: Theme.controlHeight
                        implicitHeight: Theme.controlHeight
                        visible: !window.settings.lookIsUsual
                        symbol: "arrow.counterclockwise"
                        symbolSize: 14
                        help: qsTr("New recordings have the usual look")
                        onClicked: window.settings.useUsualLook()
                    }
                }
            }
            SettingsKeys {
                width: parent.width
                keys: window.keys
            }
            SettingsSection {
                width: parent.width
                title: "Vantro"
                resettable: false
                isLast: true

                SettingsChoiceRow {
                    objectName: "theme"
                    label: qsTr("Appearance")
                    choice: window.settings.theme
                }
                SettingsChoiceRow {
                    objectName: "language"
                    label: qsTr("Language")
                    choice: window.settings.language
                    note: window.settings.languageWaits ? qsTr("Vantro speaks it from its next start on.") : ""
                    noteName: "languageNote"
                }
            }
        }
    }
}
