pragma ComponentBehavior: Bound

import QtQuick
import Kelo.Hud

// What keeps a text readable over a picture in motion: dark behind the text, and fading out around
// it, so that it cuts nothing off.
Item {
    z: -1

    Repeater {
        model: 8

        Rectangle {
            required property int index

            anchors.fill: parent
            anchors.margins: -0.75 * (index + 1) // what stands beside it is not darkened
            radius: 6
            color: Hud.bg
            opacity: 0.19 // where all of them lie, what shines through is less than a fifth
        }
    }
}
