pragma ComponentBehavior: Bound

import QtQuick
import Kelo.Hud

// Every command that the mode offers, under its heading. The rows stand for good and only show or
// hide, so a change of mode takes the keyboard focus from nobody.
Scroller {
    id: list

    sideInset: 9 // the rows are inset themselves, for their hover and focus

    required property Link link
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
                        readonly property bool listed: modelData.listed(list.link.mode)

                        width: grid.columnWidth
                        link: list.link
                        command: modelData
                        composing: list.link.mode === "compose"
                        visible: listed
                        onVisibleChanged: {
                            if (!listed && focus) // the keyboard focus goes on to who stays
                                nextItemInFocusChain().forceActiveFocus(Qt.OtherFocusReason);
                        }
                    }
                }
            }
        }

        Column {
            width: grid.columnWidth
            topPadding: 8
            visible: list.link.jazz.length > 0

            Heading {
                text: qsTr("JAZZ LESSONS")
                font: Hud.mono(11, Font.DemiBold, 3)
                leftPadding: 6
                bottomPadding: 6
            }

            Repeater {
                model: CommandTable.lessons(list.link.jazz)

                CommandButton {
                    required property command modelData

                    width: grid.columnWidth
                    link: list.link
                    command: modelData
                }
            }
        }
    }
}
