pragma ComponentBehavior: Bound

import QtQuick
import Kelo.Hud

// Every line that was said, newest last. It follows the newest line; with the keyboard focus on it
// the arrow and page keys read back.
Scroller {
    id: log

    required property Link link

    spacing: 8
    activeFocusOnTab: true

    Accessible.role: Accessible.List
    Accessible.name: qsTr("Voice log: everything Kelo has said")
    Accessible.focusable: true

    Keys.onUpPressed: move(-40)
    Keys.onDownPressed: move(40)
    Keys.onPressed: event => {
        const step = event.key === Qt.Key_PageUp ? -height
            : event.key === Qt.Key_PageDown ? height
            : event.key === Qt.Key_Home ? -contentHeight
            : event.key === Qt.Key_End ? contentHeight : 0;
        event.accepted = step !== 0;
        move(step);
    }

    function move(distance: real) {
        contentY = Math.max(0, Math.min(contentHeight - height, contentY + distance));
    }

    onContentHeightChanged: move(contentHeight)
    onHeightChanged: move(contentHeight)

    FocusRing {
        parent: log
        target: log
        anchors.margins: 3
    }

    Repeater {
        model: TranscriptModel {
            link: log.link
        }

        Item {
            id: row

            required property string time
            required property string text

            width: parent.width
            height: words.height

            Accessible.role: Accessible.ListItem
            Accessible.name: qsTr("%1  %2").arg(time).arg(text)

            HudText {
                id: stamp

                width: 64
                topPadding: 3
                text: row.time
                font: Hud.mono(10)
                color: Hud.dim
            }

            HudText {
                id: words

                anchors.left: stamp.right
                anchors.right: parent.right
                text: row.text
                wrapMode: Text.Wrap
                opacity: 0.92
            }
        }
    }
}
