pragma ComponentBehavior: Bound

import QtQuick
import Kelo.Hud

// Short strokes at the four corners of what it fills.
Item {
    id: corners

    anchors.fill: parent

    Repeater {
        model: 4

        Item {
            id: corner

            required property int index
            readonly property bool east: index % 2 === 1
            readonly property bool south: index >= 2

            width: 12
            height: 12
            x: east ? corners.width - width : 0
            y: south ? corners.height - height : 0

            Rectangle {
                width: parent.width
                height: 1
                y: corner.south ? parent.height - 1 : 0
                color: Hud.green
            }

            Rectangle {
                width: 1
                height: parent.height
                x: corner.east ? parent.width - 1 : 0
                color: Hud.green
            }
        }
    }
}
