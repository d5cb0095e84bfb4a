import QtQuick
import Kelo.Hud

// A label and its value on one line. A long value shrinks, then ends in dots.
Item {
    id: readout

    required property string label
    required property string value
    property bool lit: true

    readonly property string line: value.slice(0, 160) // no engine can make us lay out a book

    implicitWidth: 220
    implicitHeight: 30

    Accessible.role: Accessible.Paragraph
    Accessible.name: qsTr("%1: %2").arg(label).arg(line)
    Accessible.ignored: !visible

    HudText {
        id: caption

        width: Math.min(implicitWidth, readout.width * 0.62)
        height: parent.height
        verticalAlignment: Text.AlignVCenter
        fontSizeMode: Text.HorizontalFit
        minimumPixelSize: 7
        text: readout.label
        font: Hud.mono(11.5, Font.Normal, 1.5)
        color: Hud.dim
    }

    HudText {
        anchors.left: caption.right
        anchors.leftMargin: 12
        anchors.right: parent.right
        height: parent.height
        horizontalAlignment: Text.AlignRight
        verticalAlignment: Text.AlignVCenter
        text: readout.line
        font: Hud.mono(14)
        fontSizeMode: Text.HorizontalFit
        minimumPixelSize: 8
        elide: Text.ElideRight
        color: readout.lit ? Hud.soft : Hud.dim
    }

    Rule {
        anchors.bottom: parent.bottom
        width: parent.width
    }
}
