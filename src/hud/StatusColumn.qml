import QtQuick
import Kelo.Hud

// How everything that Kelo works with is doing.
Scroller {
    id: status

    required property Link link
    required property VoiceControl voice

    component Gap: Item {
        implicitWidth: 1 // a column passes over what has none
        implicitHeight: 14
    }

    Readout {
        width: parent.width
        label: qsTr("MODE")
        value: status.link.modeName
        lit: status.link.mode !== "idle"
    }

    Readout {
        width: parent.width
        label: qsTr("PIANO")
        value: status.link.keyboards || qsTr("NOT FOUND")
        lit: status.link.keyboards !== ""
    }

    Readout {
        width: parent.width
        label: qsTr("VOICE")
        value: {
            if (!status.voice.on)
                return qsTr("OFF");
            return status.link.heard ? qsTr("HEARD %1").arg(status.link.heard) : qsTr("ON");
        }
        lit: status.voice.on
    }

    Readout {
        width: parent.width
        label: qsTr("BAND")
        value: status.link.bandLevel ? qsTr("%1, %2").arg(status.link.bandStyle).arg(status.link.bandLevel)
                                     : status.link.bandStyle
        lit: status.link.live
    }

    Readout {
        width: parent.width
        label: qsTr("HANDS")
        value: status.link.hands === "both" ? qsTr("both") : qsTr("%1 ONLY").arg(status.link.hands)
        lit: status.link.hands !== "both"
    }

    Readout {
        width: parent.width
        label: qsTr("ENGINE")
        value: status.link.state
        visible: status.link.state !== "ONLINE"
    }

    Readout {
        width: parent.width
        label: qsTr("SETTINGS")
        value: qsTr("NOT KEPT")
        visible: !status.link.settingsKept
    }

    Readout {
        width: parent.width
        label: qsTr("LOGIC / REAPER")
        value: status.link.daw ? qsTr("LINKED") : qsTr("NOT OPEN")
        lit: status.link.daw
    }

    Gap {
        visible: restart.visible
    }

    HudButton {
        id: restart

        width: parent.width
        text: qsTr("RESTART ENGINE")
        size: 11
        look: HudButton.Look.Filled
        visible: status.link.state === "OFFLINE"
        onClicked: status.link.restart()
    }

    Gap {}

    VoiceReadout {
        width: parent.width
        voice: status.voice
    }

    Gap {}

    VoiceButton {
        width: parent.width
        link: status.link
        voice: status.voice
    }
}
