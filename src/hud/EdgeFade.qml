import QtQuick
import Kelo.Hud

// Lets what scrolls away fade out towards the lower edge of a panel.
Rectangle {
    width: parent.width - 10 // beside the scroll bar
    height: 14
    gradient: Gradient {
        GradientStop {
            position: 0
            color: Qt.alpha(Hud.panel, 0)
        }
        GradientStop {
            position: 1
            color: Hud.panel
        }
    }
}
