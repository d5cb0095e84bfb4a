import QtQuick

// The falling-notes scene. It is decoration: screen readers pass it by.
RainDrawing {
    id: rain

    Rectangle {
        anchors.fill: parent
        z: -1
        color: "#020604"
    }

    Labels {
        scene: rain
    }
}
