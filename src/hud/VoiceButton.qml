import QtQuick
import Kelo.Hud

// Switches voice control.
HudButton {
    required property Link link
    required property VoiceControl voice
    readonly property string assistant: link.assistant.slice(0, 40)

    checkable: true
    on: voice.on
    text: voice.on ? qsTr("VOICE ON") : qsTr("VOICE OFF")
    label: voice.on ? qsTr("Voice control is on. Say %1, then what you want").arg(assistant)
                    : qsTr("Voice control is off")
    hint: qsTr("Voice control. When it is on, say %1, then what you want.").arg(assistant)
    look: voice.on ? HudButton.Look.Filled : HudButton.Look.Outlined
    onClicked: voice.on ? voice.stop() : voice.begin()
}
