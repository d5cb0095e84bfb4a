import QtQuick
import QtQuick.Templates as T
import Kelo.Hud

// What every button of the display has in common: mouse, Space, Return and the press of a screen
// reader do the same, and the keyboard focus shows. A click leaves the focus where it is.
T.AbstractButton {
    id: button

    property string label: text // what screen readers call it
    property string hint // what they add to that

    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    focusPolicy: Qt.TabFocus
    hoverEnabled: true

    Accessible.name: label
    Accessible.description: hint
    Accessible.onPressAction: button.clicked()

    Keys.onReturnPressed: event => pressOnce(event)
    Keys.onEnterPressed: event => pressOnce(event)

    function pressOnce(event: KeyEvent) {
        if (!event.isAutoRepeat)
            button.clicked();
    }

    FocusRing {}
}
