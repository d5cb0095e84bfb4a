import QtQuick

// Lets what scrolls away fade out towards the lower edge, into what lies behind it.
Rectangle {
    id: fade

    required property color ground

    width: parent.width - 10 // beside the scroll bar
    height: 14
    gradient: Gradient {
        GradientStop {
            position: 0
            color: Qt.alpha(fade.ground, 0)
        }
        GradientStop {
            position: 1
            color: fade.ground
        }
    }
}
