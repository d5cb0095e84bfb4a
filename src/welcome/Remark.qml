import QtQuick
import Kelo.Hud

// A line about what has been answered so far.
Passage {
    font: Hud.mono(19)
    wrapMode: Text.Wrap
}
