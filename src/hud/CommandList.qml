pragma ComponentBehavior: Bound

import QtQuick
import Kelo.Hud

// Every command that the mode offers, under its heading. The rows stand for good and only show or
// hide, and lessons keep their rows, so a change takes the keyboard focus from nobody who stays.
Scroller {
    id: list

    sideInset: 9 // the rows are inset themselves, for their hover and focus

    required property Link link
    required property VoiceControl voice
    readonly property var lessons: CommandTable.lessons(link.jazz)
    property command noCommand
    readonly property int columns: Math.max(1, Math.min(3, Math.floor(width / 380)))

    Grid {
        id: grid

        readonly property real columnWidth: (width - (columns - 1) * columnSpacing) / columns

        width: parent.width
        columns: list.columns
        columnSpacing: 24
        rowSpacing: 8

        Repeater {
            id: groups

            model: CommandTable.groups

            Column {
                id: group

                required property int index
                required property commandGroup modelData

                width: grid.columnWidth
                topPadding: index < list.columns ? 0 : 8

                Heading {
                    text: group.modelData.title
                    leftPadding: 6
                    bottomPadding: 6
                }

                Repeater {
                    model: group.modelData.commands

                    CommandButton {
                        required property command modelData

                        width: grid.columnWidth
                        link: list.link
                        voice: list.voice
                        command: modelData
                        composing: list.link.mode === "compose"
                        visible: modelData.listed(list.link.mode)
                    }
                }
            }
        }

        Column {
            width: grid.columnWidth
            topPadding: 8
            visible: list.lessons.length > 0

            Heading {
                text: qsTr("JAZZ LESSONS")
                font: Hud.mono(11, Font.DemiBold, 3)
                leftPadding: 6
                bottomPadding: 6
            }

            Repeater {
                model: list.lessons.length

                CommandButton {
                    required property int index

                    width: grid.columnWidth
                    link: list.link
                    voice: list.voice
                    command: list.lessons[index] ?? list.noCommand // none while the row goes
                }
            }
        }
    }
}
