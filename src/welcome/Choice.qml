import QtQuick
import QtQuick.Templates as T
import Kelo.Hud

// One of several answers that exclude each other. Qt's own button for that, for only that one is
// told of as such; in all else it is like the other buttons.
T.RadioButton {
    id: choice

    property string label: text // what screen readers call it
    property string hint // what they add to that
    required property bool marked // so that it does not go by its colour alone

    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    leftPadding: 10
    rightPadding: 10
    verticalPadding: 7
    hoverEnabled: true

    Accessible.name: label
    Accessible.description: hint
    Accessible.ignored: !visible
    Accessible.focusable: focusPolicy !== Qt.NoFocus // arrows lead to the others
    Accessible.onPressAction: choice.clicked()
    Accessible.onToggleAction: choice.clicked()

    Keys.onReturnPressed: choice.clicked()
    Keys.onEnterPressed: choice.clicked()

    contentItem: HudText {
        text: choice.marked ? (choice.checked ? "● " : "○ ") + choice.text : choice.text
        font: Hud.mono(18, choice.checked ? Font.Bold : Font.Normal)
        color: choice.checked ? Hud.bg : Hud.soft
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
    }

    background: Rectangle {
        color: choice.checked ? Hud.green : Hud.bg
        border.color: choice.hovered || choice.checked ? Hud.green : Hud.faint
        radius: 3
    }

    FocusRing {}
}
