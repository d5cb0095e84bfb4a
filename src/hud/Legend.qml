pragma ComponentBehavior: Bound

import QtQuick
import Kelo.Hud

// What the command keys of the piano do in this mode.
Flow {
    id: legend

    required property string mode
    readonly property var jobs: CommandTable.jobs(mode)

    spacing: 8

    Accessible.role: Accessible.Paragraph
    Accessible.ignored: !visible
    Accessible.name: title.text + CommandTable.jobsInWords(mode)

    HudText {
        id: title

        height: 18
        verticalAlignment: Text.AlignVCenter
        text: qsTr("Piano buttons: ")
        font: Hud.mono(11)
        color: Hud.dim
    }

    Repeater {
        model: legend.jobs.length

        Row {
            id: entry

            required property int index
            readonly property buttonJob job: legend.jobs[index]

            spacing: 6
            rightPadding: 6

            Rectangle {
                width: 18
                height: 18
                radius: 3
                color: Hud.green

                HudText {
                    anchors.centerIn: parent
                    text: entry.job.label
                    font: Hud.mono(11)
                    color: Hud.bg
                }
            }

            HudText {
                height: 18
                verticalAlignment: Text.AlignVCenter
                text: entry.job.job
                font: Hud.mono(10.5)
            }
        }
    }
}
