import QtQuick
import Kelo.Hud

// Text that screen readers read where they come upon it. As a paragraph, for Qt tells them of what
// it calls static text that the keyboard focus can go there.
HudText {
    Accessible.role: Accessible.Paragraph
    Accessible.name: text
    Accessible.ignored: !visible || text === ""
}
