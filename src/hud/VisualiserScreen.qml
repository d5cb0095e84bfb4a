import QtQuick
import Kelo.Hud

// The visualiser in the whole window: the scene, which is handed in, and a row of controls over it.
Item {
    id: screen

    required property Link link
    required property VoiceControl voice
    property Component scene

    readonly property bool narrow: width < 620 // too narrow for all controls in a row

    // Where a text in the upper middle may begin: below the title while it fits beside the
    // controls, else below all that stands at the top.
    readonly property real captionTop: (width + Math.min(width * 0.5, 620)) / 2 + 16 < buttons.x ? 40 : 144

    Loader {
        anchors.fill: parent
        sourceComponent: screen.scene
    }

    Grid {
        id: buttons

        y: 20
        anchors.right: screen.narrow ? parent.right : ears.left
        anchors.rightMargin: screen.narrow ? 30 : 2 * spacing
        columns: screen.narrow ? 1 : 2 // one below the other they leave the title its place
        horizontalItemAlignment: Grid.AlignRight
        spacing: screen.narrow ? 6 : 12

        HudButton {
            visible: !screen.link.rolling
            text: qsTr("PLAY A MIDI FILE  [ O ]")
            hint: qsTr("Choose a MIDI file and watch its notes fall onto the keys")
            onClicked: screen.link.chooseFile()
        }

        HudButton {
            visible: screen.link.rolling
            text: qsTr("STOP  [ RETURN ]")
            hint: qsTr("Stop the MIDI file")
            onClicked: screen.link.send("\n")
        }

        HudButton {
            text: qsTr("BACK  [ F ]")
            hint: qsTr("Leave the visualiser")
            onClicked: screen.link.showVisualiser(false)
        }
    }

    VoiceReadout {
        id: ears

        y: screen.narrow ? buttons.y + buttons.height + 6 : buttons.y + (buttons.height - height) / 2
        anchors.right: parent.right
        anchors.rightMargin: 30
        width: 190
        voice: screen.voice

        Rectangle {
            z: -1
            anchors.fill: parent
            anchors.margins: -6
            radius: 6
            color: Hud.bg
            opacity: 0.75
        }
    }
}
