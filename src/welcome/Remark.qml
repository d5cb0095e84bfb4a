import QtQuick
import Kelo.Hud

// A line about what has been answered so far.
Words {
    font: Hud.mono(19)
    wrapMode: Text.Wrap
}
