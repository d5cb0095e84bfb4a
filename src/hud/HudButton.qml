import QtQuick
import Kelo.Hud

// A text button: outlined, filled when it is what the user most likely wants, quiet when not.
Pressable {
    id: button

    enum Look { Outlined, Filled, Quiet }

    property int look: HudButton.Look.Outlined
    property real size: 12
    property real tracking: 2
    property real widest: Infinity // longer words wrap

    readonly property bool filled: look === HudButton.Look.Filled

    implicitWidth: Math.min(implicitContentWidth + leftPadding + rightPadding, widest)
    horizontalPadding: 16
    verticalPadding: 10
    rightPadding: horizontalPadding - tracking // each letter brings its tracking, the last one too

    contentItem: HudText {
        text: button.text
        font: Hud.mono(button.size, Font.Normal, button.tracking)
        color: {
            if (button.filled)
                return Hud.bg;
            return button.look === HudButton.Look.Quiet ? Hud.dim : Hud.green;
        }
        wrapMode: Text.Wrap
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
    }

    background: Rectangle {
        color: button.filled ? Hud.green : Hud.bg
        border.color: button.look === HudButton.Look.Quiet && !button.hovered ? Hud.faint : Hud.green
        radius: 2

        Rectangle {
            anchors.fill: parent
            radius: parent.radius
            color: button.filled ? Hud.soft : Hud.green
            opacity: button.down ? 0.4 : button.hovered ? 0.16 : 0
        }
    }
}
