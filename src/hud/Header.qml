import QtQuick
import QtQuick.Layouts
import Kelo.Hud

// Who is here, whether it runs, and the two things that have a screen or a dialog of their own.
GridLayout {
    id: header

    required property Link link
    required property real room // width there is; its own grows with what stands in it
    readonly property bool online: link.state === "ONLINE"

    readonly property real buttons: play.implicitWidth + visualiser.implicitWidth + columnSpacing

    columns: {
        if (room >= 200 + state.implicitWidth + buttons + 3 * columnSpacing)
            return 4;
        return room >= buttons ? 2 : 1;
    }
    columnSpacing: 16
    rowSpacing: 10

    ColumnLayout {
        spacing: 2
        Layout.fillWidth: true
        Layout.minimumWidth: 0

        Glow {
            Layout.fillWidth: true
            text: header.link.assistant.slice(0, 40)
            font: Hud.mono(24, Font.Normal, 9)
            fontSizeMode: Text.HorizontalFit
            minimumPixelSize: 12
            color: Hud.green
            Accessible.role: Accessible.Heading
            Accessible.name: text
            Accessible.ignored: !visible
        }

        Passage {
            text: qsTr("MUSIC ASSISTANT  //  V3")
            font: Hud.mono(11)
            color: Hud.dim
        }
    }

    ColumnLayout {
        id: state

        spacing: 4

        Row { // repeats in light what the line below says
            spacing: 8

            Rectangle {
                anchors.verticalCenter: parent.verticalCenter
                width: 10
                height: 10
                radius: 5
                color: header.online ? Hud.green : "transparent"
                border.color: light.color
            }

            HudText {
                id: light

                text: qsTr("ONLINE")
                font: Hud.mono(12, Font.Normal, 3)
                color: header.online ? Hud.green : Hud.dim
            }
        }

        Passage {
            text: qsTr("Kelo is %1").arg(header.link.state)
            font: Hud.mono(12)
            color: Hud.dim
        }
    }

    HudButton {
        id: play

        widest: header.room
        text: qsTr("PLAY A MIDI FILE  [ O ]")
        hint: qsTr("Choose a MIDI file and watch its notes fall onto the keys")
        onClicked: header.link.chooseFile()
    }

    HudButton {
        id: visualiser

        widest: header.room
        text: qsTr("VISUALISER  [ F ]")
        hint: qsTr("Open the visualiser: your playing as rising light")
        onClicked: header.link.showVisualiser()
    }
}
