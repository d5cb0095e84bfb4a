import QtQuick
import Kelo.Hud

// A line about what has been answered so far.
HudText {
    font: Hud.mono(19)
    wrapMode: Text.Wrap
    Accessible.role: Accessible.StaticText
    Accessible.name: text
}
