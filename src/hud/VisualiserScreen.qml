import QtQuick
import Kelo.Hud

// The visualiser in the whole window: the scene, which is handed in, and a row of controls over it.
Item {
    id: screen

    required property Link link
    required property VoiceControl voice
    property Component scene

    // Where a text in the upper middle may begin: below the title while it fits beside the
    // controls, else below all that stands at the top.
    readonly property real captionTop: (width + Math.min(width * 0.5, 620)) / 2 + 16 < controls.x ? 40 : 144

    Loader {
        anchors.fill: parent
        sourceComponent: screen.scene
    }

    Row {
        id: controls

        anchors.top: parent.top
        anchors.topMargin: 20
        anchors.right: parent.right
        anchors.rightMargin: 30
        spacing: 12

        HudButton {
            anchors.verticalCenter: parent.verticalCenter
            visible: screen.link.rolling
            text: qsTr("STOP  [ RETURN ]")
            hint: qsTr("Stop the MIDI file")
            onClicked: screen.link.send("\n")
        }

        HudButton {
            anchors.verticalCenter: parent.verticalCenter
            visible: !screen.link.rolling
            text: qsTr("PLAY A MIDI FILE  [ O ]")
            hint: qsTr("Choose a MIDI file and watch its notes fall onto the keys")
            onClicked: screen.link.chooseFile()
        }

        HudButton {
            anchors.verticalCenter: parent.verticalCenter
            text: qsTr("BACK  [ F ]")
            hint: qsTr("Leave the visualiser")
            onClicked: screen.link.visual = false
        }

        VoiceReadout {
            anchors.verticalCenter: parent.verticalCenter
            width: 190
            voice: screen.voice
        }
    }
}
