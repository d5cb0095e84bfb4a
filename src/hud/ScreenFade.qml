import QtQuick

// A place for a whole screen. Screens replace each other by fading; the one that comes is there at
// once, for the keyboard.
Item {
    id: place

    required property bool shown

    anchors.fill: parent
    opacity: shown ? 1 : 0
    visible: shown || opacity > 0
    enabled: shown

    Behavior on opacity {
        NumberAnimation {
            duration: 300
            easing.type: Easing.OutCubic
        }
    }
}
