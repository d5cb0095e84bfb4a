import QtQuick
import Kelo.Visual

// The falling-notes scene. It is decoration: screen readers pass it by.
RainItem {
    id: rain

    property bool magnified: false

    Rectangle {
        anchors.fill: parent
        z: -1
        color: rain.background
    }

    Labels {
        scene: rain
        magnified: rain.magnified
    }
}
