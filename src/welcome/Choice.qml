import QtQuick
import Kelo.Hud

// One of several answers that exclude each other.
Pressable {
    id: choice

    property real size: 18
    property string mark: checked ? "●" : "○" // so that no choice goes by its colour alone

    leftPadding: 10
    rightPadding: 10
    verticalPadding: 7

    Accessible.role: Accessible.RadioButton
    Accessible.checkable: true
    Accessible.checked: checked
    Accessible.focusable: focusPolicy !== Qt.NoFocus // arrows lead to the others

    contentItem: HudText {
        text: choice.mark ? choice.mark + " " + choice.text : choice.text
        font: Hud.mono(choice.size, choice.checked ? Font.Bold : Font.Normal)
        color: choice.checked ? Hud.bg : Hud.soft
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
    }

    background: Rectangle {
        color: choice.checked ? Hud.green : Hud.bg
        border.color: choice.hovered || choice.checked ? Hud.green : Hud.faint
        radius: 3
    }
}
