import QtQuick
import Kelo.Hud

// What the ears are doing, and how loud it is in the room.
Item {
    id: ears

    required property VoiceControl voice

    implicitHeight: status.height + 11

    Readout {
        id: status

        width: parent.width
        label: qsTr("EARS")
        value: ears.voice.status
        lit: ears.voice.on
    }

    LevelMeter {
        id: meter

        readonly property real share: Math.max(0, Math.min(1, ears.voice.level))

        anchors.top: status.bottom
        anchors.topMargin: 6
        width: parent.width
        height: 4
        value: Math.round(share * 100)

        Accessible.role: Accessible.ProgressBar
        Accessible.ignored: !visible

        Rectangle {
            anchors.fill: parent
            radius: 2
            color: Hud.faint
        }

        Rectangle {
            width: Math.round(parent.width * meter.share) // noise that cannot be seen draws no frame
            height: parent.height
            radius: 2
            color: Hud.green
        }
    }
}
