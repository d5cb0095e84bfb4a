import QtQuick
import QtQuick.Layouts
import Kelo.Hud

// The main screen: header, caption, three columns, keyboard.
ColumnLayout {
    id: console_

    required property Link link
    required property VoiceControl voice
    property Component core
    property Component caption
    property Component keyStrip

    readonly property int gap: 14

    // Room for the longest line of a caption, wrapped.
    readonly property int letter: link.large ? 36 : 24
    readonly property real captionHeight: Math.max(44, Math.ceil(86 * 0.602 * letter / width) * letter * 1.17 + 4)

    spacing: gap

    Header {
        Layout.fillWidth: true
        link: console_.link
    }

    // What is said, and while nothing is, what one could ask for.
    Item {
        Layout.fillWidth: true
        Layout.preferredHeight: console_.captionHeight

        TrySaying {
            anchors.fill: parent
            link: console_.link
            voice: console_.voice
            visible: !said.item?.shown
        }

        Loader {
            id: said

            anchors.fill: parent
            sourceComponent: console_.caption
        }
    }

    RowLayout {
        id: columns

        Layout.fillWidth: true
        Layout.fillHeight: true
        spacing: console_.gap

        Panel {
            Layout.fillHeight: true
            Layout.preferredWidth: Math.max(230, Math.min(340, console_.width * 0.21))
            title: qsTr("SYSTEMS")

            StatusColumn {
                anchors.fill: parent
                link: console_.link
                voice: console_.voice
            }
        }

        Item {
            id: centre

            Layout.fillWidth: true
            Layout.fillHeight: true

            Loader {
                id: coreSlot

                readonly property real side: Math.min(centre.width, centre.height * 0.56, 560)
                readonly property bool fits: active && side >= 140

                anchors.horizontalCenter: parent.horizontalCenter
                width: side
                height: fits ? side : 0
                visible: fits
                active: console_.core !== null
                sourceComponent: console_.core
            }

            Panel {
                anchors.top: coreSlot.bottom
                anchors.topMargin: coreSlot.fits ? console_.gap : 0
                anchors.bottom: parent.bottom
                width: parent.width
                title: qsTr("CONVERSATION")
                note: qsTr("Mode: %1").arg(console_.link.modeName)

                VoiceLog {
                    anchors.fill: parent
                    link: console_.link
                }
            }
        }

        Panel {
            readonly property int wanted: console_.width >= 2900 ? 3 : console_.width >= 1800 ? 2 : 1

            Layout.fillHeight: true
            Layout.preferredWidth: Math.max(296, Math.min(430 * wanted, console_.width * 0.34))
            title: qsTr("COMMANDS")

            CommandList {
                anchors.fill: parent
                link: console_.link
            }
        }
    }

    Panel {
        Layout.fillWidth: true
        title: qsTr("KEYBOARD  //  88 KEYS")
        contentHeight: keyboard.height + 24

        Column {
            id: keyboard

            x: 15
            y: 12
            width: parent.width - 30
            spacing: 12

            Loader {
                width: parent.width
                height: Math.max(106, Math.min(180, console_.height * 0.17))
                active: console_.keyStrip !== null && console_.height - console_.captionHeight >= 450
                visible: active
                sourceComponent: console_.keyStrip
            }

            Legend {
                width: parent.width
                mode: console_.link.mode
            }
        }
    }
}
