import QtQuick
import Kelo.Hud

// Text as the engine or the program words it, never as markup. Like every plain text it is unknown
// to screen readers until its user gives it a role.
Text {
    color: Hud.soft
    font: Hud.mono(13)
    minimumPointSize: Math.max(1, 0.75 * minimumPixelSize) // a font knows its size in either unit
    textFormat: Text.PlainText
    renderType: Hud.magnified ? Text.QtRendering : Text.NativeRendering
}
