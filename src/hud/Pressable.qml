import QtQuick
import QtQuick.Templates as T
import Kelo.Hud

// What every button of the display has in common: mouse, Space, Return and the press of a screen
// reader do the same, and the keyboard focus shows. A click leaves the focus where it is. What does
// not show is not there for screen readers either.
T.AbstractButton {
    id: button

    property string label: text // what screen readers call it
    property string hint // what they add to that
    property bool on: false // with `checkable`: what the button switches is on

    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    focusPolicy: Qt.TabFocus
    hoverEnabled: true
    checked: on

    onToggled: checked = Qt.binding(() => on) // a press asks for a change; it does not make one

    Accessible.name: label
    Accessible.description: hint
    Accessible.ignored: !visible
    Accessible.onPressAction: press()
    Accessible.onToggleAction: press()

    Keys.onReturnPressed: event => pressOnce(event)
    Keys.onEnterPressed: event => pressOnce(event)

    function press() {
        if (visible && enabled)
            clicked();
    }

    function pressOnce(event: KeyEvent) {
        if (!event.isAutoRepeat)
            press();
    }

    FocusRing {}
}
