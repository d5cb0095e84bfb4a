import QtQuick
import Kelo.Hud

// The visualiser in the whole window: the scene, which is handed in, and a row of controls over it.
// Where they leave the scene's title no room they stand above all its texts, in as many rows as it
// takes.
Item {
    id: screen

    required property Link link
    required property VoiceControl voice
    property Component scene

    readonly property int title: 180 // what the scene's title takes, from the left
    readonly property bool stacked: width < title + controls.aRow
    readonly property real textsTop: stacked ? controls.y + controls.height + 8 : 0 // of the scene

    // Where a text in the upper middle may begin: below the title while it fits beside the
    // controls, else below all that stands at the top.
    readonly property real captionTop: (width + Math.min(width * 0.5, 620)) / 2 + 16 < controls.x ? 40 : 144

    Loader {
        anchors.fill: parent
        sourceComponent: screen.scene
    }

    Flow {
        id: controls

        readonly property int margin: screen.stacked ? 16 : 30
        readonly property real aRow: Math.max(play.implicitWidth, stop.implicitWidth)
            + back.implicitWidth + ears.wanted + 4 * spacing + 30

        x: screen.stacked ? margin : screen.width - width - margin
        y: screen.stacked ? 12 : 20
        width: screen.stacked ? screen.width - 2 * margin
            : (stop.visible ? stop : play).width + back.width + ears.width + 2 * spacing
        spacing: 12

        HudButton {
            id: play

            height: Math.max(implicitHeight, ears.height)
            widest: screen.width - 32
            visible: !screen.link.rolling
            text: qsTr("PLAY A MIDI FILE  [ O ]")
            hint: qsTr("Choose a MIDI file and watch its notes fall onto the keys")
            onClicked: screen.link.chooseFile()
        }

        HudButton {
            id: stop

            height: Math.max(implicitHeight, ears.height)
            widest: screen.width - 32
            visible: screen.link.rolling
            text: qsTr("STOP  [ RETURN ]")
            hint: qsTr("Stop the MIDI file")
            onClicked: screen.link.send("\n")
        }

        HudButton {
            id: back

            height: Math.max(implicitHeight, ears.height)
            widest: screen.width - 32
            text: qsTr("BACK  [ F ]")
            hint: qsTr("Leave the visualiser")
            onClicked: screen.link.showVisualiser(false)
        }

        VoiceReadout {
            id: ears

            readonly property int wanted: 190

            width: screen.stacked ? 160 : wanted
            voice: screen.voice

            SoftGround {
                anchors.fill: parent
            }
        }
    }
}
