import QtQuick
import Kelo.Hud

// A quiet horizontal line.
Rectangle {
    implicitHeight: 1
    color: Hud.faint
}
