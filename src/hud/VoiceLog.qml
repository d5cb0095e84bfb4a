pragma ComponentBehavior: Bound

import QtQuick
import Kelo.Hud

// Every line that was said, newest last, and the newest in view. Tab stops at one of them, at first
// the newest; from there the arrow and page keys go from line to line.
Scroller {
    id: log

    required property Link link
    property Item current // the line that Tab stops at

    spacing: 8
    scrollsByKey: false
    activeFocusOnTab: lines.count === 0

    Accessible.role: Accessible.List
    Accessible.name: qsTr("Voice log: everything Kelo has said")
    Accessible.focusable: activeFocusOnTab
    Accessible.ignored: !visible

    Keys.onPressed: event => {
        const line = target(event.key);
        event.accepted = line !== null;
        line?.forceActiveFocus();
    }

    /// The line that a key leads to; null for a key that leads nowhere.
    function target(key: int): Item {
        const last = lines.count - 1;
        const from = lineIndex(current);
        switch (from < 0 ? Qt.Key_unknown : key) {
        case Qt.Key_Up:
            return lines.itemAt(Math.max(0, from - 1));
        case Qt.Key_Down:
            return lines.itemAt(Math.min(last, from + 1));
        case Qt.Key_PageUp:
            return lines.itemAt(aPageFrom(from, -1));
        case Qt.Key_PageDown:
            return lines.itemAt(aPageFrom(from, 1));
        case Qt.Key_Home:
            return lines.itemAt(0);
        case Qt.Key_End:
            return lines.itemAt(last);
        }
        return null;
    }

    function lineIndex(line: Item): int {
        for (let i = 0; i < lines.count; ++i) {
            if (lines.itemAt(i) === line)
                return i;
        }
        return -1;
    }

    function aPageFrom(from: int, step: int): int {
        const start = lines.itemAt(from).y;
        let to = from;
        do
            to += step;
        while (lines.itemAt(to + step) && Math.abs(lines.itemAt(to + step).y - start) < height);
        return Math.max(0, Math.min(lines.count - 1, to));
    }

    function follow() {
        if (!current?.activeFocus) // who reads keeps the place
            current = lines.itemAt(lines.count - 1);
        scrollTo(contentHeight);
    }

    onContentHeightChanged: scrollTo(contentHeight)
    onHeightChanged: scrollTo(contentHeight)

    FocusRing {
        parent: log
        target: log
        anchors.margins: 3
    }

    Repeater {
        id: lines

        model: TranscriptModel {
            link: log.link
        }

        onItemAdded: (index, item) => Qt.callLater(log.follow)
        onItemRemoved: (index, item) => {
            if (item.activeFocus) // the oldest line goes while it is read
                lines.itemAt(0)?.forceActiveFocus();
            Qt.callLater(log.follow);
        }

        Item {
            id: row

            required property string time
            required property string text

            width: parent.width
            height: words.height
            activeFocusOnTab: log.current === row
            onActiveFocusChanged: {
                if (activeFocus)
                    log.current = row;
            }

            Accessible.role: Accessible.ListItem
            Accessible.name: qsTr("%1  %2").arg(time).arg(text)
            Accessible.focusable: activeFocusOnTab
            Accessible.ignored: !visible

            FocusRing {}

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
