import QtQuick
import QtQuick.Layouts
import Kelo.Hud

// The main screen: header, caption, three columns, keyboard. Where it is too narrow for columns, in
// a small window or with all drawn large, they stand one below the other; where it is too low, all
// of it scrolls.
Scroller {
    id: console_

    required property Link link
    required property VoiceControl voice
    property Component core
    property Component caption
    property Component keyStrip

    readonly property int gap: 14
    readonly property bool stacked: width < 824 // narrower than three columns need
    // Room for the longest line of a caption, wrapped: words leave some of a line empty.
    readonly property int letter: link.large ? 36 : 24
    readonly property int lettersALine: Math.max(1, (width - 2 * sideInset) / (0.602 * letter) - 1)
    // Where that is more than shows at once, large letters become smaller.
    readonly property real captionHeight: Math.max(44, Math.min(height - 2 * inset,
        Math.ceil(86 / lettersALine) * letter * 1.17 + 4))

    // The ring stands above the conversation, or where it would leave that too low beside the keys.
    readonly property bool ringAtKeys: !stacked && core !== null && height - captionHeight < 640

    inset: 6
    sideInset: 18 // beside the scroll bar
    ground: Hud.bg

    GridLayout {
        id: all

        // What leaves the columns enough height to read in.
        readonly property real least: header.implicitHeight + speech.Layout.preferredHeight
            + keys.implicitHeight + 3 * rowSpacing + 150

        width: parent.width
        height: console_.stacked ? implicitHeight : Math.max(least, console_.height - 2 * console_.inset)
        columns: 1
        rowSpacing: console_.stacked ? 6 : console_.gap

        Header {
            id: header

            Layout.row: 1
            Layout.fillWidth: true
            room: all.width
            link: console_.link
        }

        // What is said, and while nothing is, what one could ask for.
        Item {
            id: speech

            Layout.row: console_.stacked ? 0 : 2 // what is said must be seen whatever the size
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

        GridLayout {
            id: columns

            Layout.row: 3
            Layout.fillWidth: true
            Layout.fillHeight: true
            columns: console_.stacked ? 1 : 3
            columnSpacing: console_.gap
            rowSpacing: all.rowSpacing

            Panel {
                Layout.fillWidth: console_.stacked
                Layout.fillHeight: true
                Layout.preferredWidth: Math.max(230, Math.min(340, all.width * 0.21))
                Layout.minimumHeight: console_.stacked ? implicitHeight : 0
                title: qsTr("SYSTEMS")
                contentHeight: systems.contentHeight

                StatusColumn {
                    id: systems

                    anchors.fill: parent
                    link: console_.link
                    voice: console_.voice
                }
            }

            Item {
                id: centre

                Layout.fillWidth: true
                Layout.fillHeight: true
                Layout.minimumHeight: console_.stacked ? coreSlot.height + coreSlot.below + 150 : 0

                Loader {
                    id: coreSlot

                    // All but what the last few lines of the conversation need.
                    readonly property real most: Math.max(centre.height * 0.56, centre.height - console_.gap - 128)
                    readonly property real side: console_.stacked ? Math.min(160, all.width - 40)
                        : Math.min(centre.width, most, Math.max(560, centre.height * 0.66))
                    readonly property bool fits: active && side >= 140
                    readonly property real below: fits ? console_.gap : 0

                    anchors.horizontalCenter: parent.horizontalCenter
                    width: side
                    height: fits ? side : 0
                    visible: fits
                    active: console_.core !== null && !console_.ringAtKeys
                    sourceComponent: console_.core
                }

                Panel {
                    anchors.top: coreSlot.bottom
                    anchors.topMargin: coreSlot.below
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
                readonly property int wanted: all.width >= 2880 ? 3 : all.width >= 1780 ? 2 : 1

                Layout.fillWidth: console_.stacked
                Layout.fillHeight: true
                Layout.preferredWidth: Math.max(296, Math.min(430 * wanted, all.width * 0.34))
                Layout.minimumHeight: console_.stacked ? implicitHeight : 0
                title: qsTr("COMMANDS")
                contentHeight: commands.contentHeight

                CommandList {
                    id: commands

                    anchors.fill: parent
                    link: console_.link
                    voice: console_.voice
                }
            }
        }

        Panel {
            id: keys

            Layout.row: 4
            Layout.fillWidth: true
            title: qsTr("KEYBOARD  //  88 KEYS")
            contentHeight: Math.max(keyboard.height, ring.height) + 24

            Loader {
                id: ring

                x: 8
                y: 12
                width: active ? 180 : 0
                height: width
                active: console_.ringAtKeys
                sourceComponent: console_.core
            }

            Column {
                id: keyboard

                x: ring.active ? ring.x + ring.width + 8 : 15
                y: 12
                width: parent.width - x - 15
                spacing: 12

                Loader {
                    width: parent.width
                    height: Math.max(140, Math.min(180, console_.height * 0.17))
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
}
