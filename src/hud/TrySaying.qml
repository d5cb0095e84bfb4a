import QtQuick
import Kelo.Hud

// What one could ask for now.
Passage {
    id: hint

    required property Link link
    required property VoiceControl voice

    TrySayingHint {
        id: words

        assistant: hint.link.assistant
        voiceOn: hint.voice.on
    }

    text: words.text
    font: Hud.mono(11.5, Font.Normal, 1.5)
    color: Hud.dim
    horizontalAlignment: Text.AlignHCenter
    verticalAlignment: Text.AlignVCenter
    wrapMode: Text.WordWrap
}
