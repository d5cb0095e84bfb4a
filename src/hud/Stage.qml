import QtQuick

// A place for a whole screen. Screens replace each other by fading.
Item {
    id: stage

    required property bool shown

    anchors.fill: parent
    opacity: shown ? 1 : 0
    visible: opacity > 0
    enabled: shown

    Behavior on opacity {
        NumberAnimation {
            duration: 300
            easing.type: Easing.OutCubic
        }
    }
}
