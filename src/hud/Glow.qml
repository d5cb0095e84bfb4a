pragma ComponentBehavior: Bound

import QtQuick
import Kelo.Hud

// One line of text with a soft light around it: faint copies on two circles. Drawn once, it costs
// nothing while it stands.
HudText {
    id: glow

    Repeater {
        model: 24

        Text {
            required property int index
            readonly property real angle: index * Math.PI / 6
            readonly property real radius: index < 12 ? 2 : 5

            x: radius * Math.cos(angle)
            y: radius * Math.sin(angle)
            z: -1
            width: glow.width
            height: glow.height
            text: glow.text
            textFormat: Text.PlainText
            renderType: glow.renderType
            font: glow.font
            fontSizeMode: glow.fontSizeMode
            minimumPixelSize: glow.minimumPixelSize
            minimumPointSize: glow.minimumPointSize
            verticalAlignment: glow.verticalAlignment
            wrapMode: glow.wrapMode
            color: Hud.green
            opacity: index < 12 ? 0.042 : 0.0175
        }
    }
}
