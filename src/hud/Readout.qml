import QtQuick
import Kelo.Hud

// A label and its value. A long label takes a second line; a long value shrinks, then ends in dots.
Item {
    id: readout

    required property string label
    required property string value
    property bool lit: true

    readonly property string line: value.slice(0, 160) // no engine can make us lay out a book

    implicitHeight: Math.max(30, caption.implicitHeight + 8)

    Accessible.role: Accessible.Paragraph
    Accessible.name: qsTr("%1: %2").arg(label).arg(line)
    Accessible.ignored: !visible

    HudText {
        id: caption

        // As much as the value leaves when it is at its smallest.
        width: Math.min(implicitWidth, Math.max(readout.width * 0.4,
            readout.width - reading.anchors.leftMargin - reading.implicitWidth * 11 / 14))
        height: parent.height
        verticalAlignment: Text.AlignVCenter
        wrapMode: Text.Wrap
        maximumLineCount: 2
        elide: Text.ElideRight
        text: readout.label
        font: Hud.mono(11.5, Font.Normal, 1.5)
        color: Hud.dim
    }

    HudText {
        id: reading

        anchors.left: caption.right
        anchors.leftMargin: 12
        anchors.right: parent.right
        height: parent.height
        horizontalAlignment: Text.AlignRight
        verticalAlignment: Text.AlignVCenter
        text: readout.line
        font: Hud.mono(14)
        fontSizeMode: Text.HorizontalFit
        minimumPixelSize: 11
        elide: Text.ElideRight
        color: readout.lit ? Hud.soft : Hud.dim
    }

    Rule {
        anchors.bottom: parent.bottom
        width: parent.width
    }
}
