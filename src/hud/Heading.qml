import QtQuick
import Kelo.Hud

// A heading that screen readers can jump to.
HudText {
    color: Hud.dim
    font: Hud.mono(11, Font.Normal, 3)
    Accessible.role: Accessible.Heading
    Accessible.name: text
    Accessible.ignored: !visible
}
