import QtQuick
import Kelo.Hud

// Put into a control, it outlines the control while that has the keyboard focus. The gap between
// the two outlines makes it a shape of its own, whatever the colours.
Rectangle {
    property Item target: parent as Item

    anchors.fill: target
    anchors.margins: -4
    visible: target && target.activeFocus
    color: "transparent"
    border.color: Hud.soft
    border.width: 2
    radius: 5
}
