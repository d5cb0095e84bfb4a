import QtQuick
import QtQuick.Layouts
import Kelo.Hud

// The main screen: header, three columns, keyboard.
ColumnLayout {
    id: console_

    required property Link link
    required property VoiceControl voice
    property Component core
    property Component caption
    property Component keyStrip

    readonly property int gap: 14

    spacing: gap

    Header {
        Layout.fillWidth: true
        link: console_.link
    }

    RowLayout {
        id: columns

        Layout.fillWidth: true
        Layout.fillHeight: true
        spacing: console_.gap

        Panel {
            Layout.fillHeight: true
            Layout.preferredWidth: Math.max(236, Math.min(340, console_.width * 0.21))
            title: qsTr("SYSTEMS")

            StatusColumn {
                anchors.fill: parent
                link: console_.link
                voice: console_.voice
            }
        }

        ColumnLayout {
            id: centre

            Layout.fillWidth: true
            Layout.fillHeight: true
            Layout.minimumWidth: 0
            spacing: console_.gap

            Loader {
                id: coreSlot

                readonly property real side: Math.min(centre.width, columns.height * 0.46, 420)

                Layout.alignment: Qt.AlignHCenter
                Layout.preferredWidth: side
                Layout.preferredHeight: side
                active: console_.core !== null
                visible: active && side >= 120
                sourceComponent: console_.core
            }

            Loader {
                Layout.fillWidth: true
                Layout.preferredHeight: console_.link.large ? 104 : 76
                active: console_.caption !== null
                visible: active
                sourceComponent: console_.caption
            }

            Panel {
                Layout.fillWidth: true
                Layout.fillHeight: true
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
            Layout.preferredWidth: Math.max(300, Math.min(430 * wanted, console_.width * 0.34))
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

            x: 16
            y: 12
            width: parent.width - 32
            spacing: 12

            Loader {
                width: parent.width
                height: console_.height < 700 ? 116 : 140
                active: console_.keyStrip !== null
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
