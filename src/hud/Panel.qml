import QtQuick
import Kelo.Hud

// A titled box. What stands in it fills the room under the title.
Item {
    id: panel

    required property string title
    property string note // beside the title, quieter
    property real contentHeight: 0 // of what does not simply fill the panel
    default property alias content: room.data

    implicitHeight: heading.height + 2 + contentHeight

    Accessible.role: Accessible.Grouping
    Accessible.name: title
    Accessible.ignored: !visible

    Rectangle {
        anchors.fill: parent
        color: Hud.panel
        border.color: Hud.faint
    }

    Corners {}

    Heading {
        id: heading

        x: 16
        width: panel.width - 32
        height: 34
        wrapMode: Text.Wrap
        maximumLineCount: 2
        elide: Text.ElideRight
        verticalAlignment: Text.AlignVCenter
        text: panel.title
        font: Hud.mono(12, Font.Normal, 3)
        color: Hud.green
    }

    Passage {
        anchors.right: parent.right
        anchors.rightMargin: 16
        height: heading.height
        verticalAlignment: Text.AlignVCenter
        text: panel.note
        visible: text !== "" && implicitWidth <= panel.width - heading.contentWidth - 44
        font: Hud.mono(11)
    }

    Rule {
        anchors.top: heading.bottom
        x: 1
        width: parent.width - 2
    }

    Item {
        id: room

        anchors.fill: parent
        anchors.margins: 1 // inside the outline
        anchors.topMargin: heading.height + 1
    }
}
