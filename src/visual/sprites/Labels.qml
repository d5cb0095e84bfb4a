import QtQuick
import Kelo.Visual

// The texts over a scene, which places them from its lower left corner.
Item {
    id: labels

    required property SceneItem scene
    property bool magnified: false // drawn at another size than its own, so glyphs must stretch well

    anchors.fill: scene

    Repeater {
        model: labels.scene.labels

        Text {
            required property var modelData

            readonly property bool several: modelData.lines > 1

            x: modelData.x - (modelData.centred ? width / 2 : 0)
            y: labels.height - modelData.y - (several ? 0 : baselineOffset) // qmllint disable unqualified
            width: modelData.width > 0 ? Math.min(implicitWidth, modelData.width) : implicitWidth
            text: modelData.text
            textFormat: Text.PlainText
            renderType: labels.magnified ? Text.QtRendering : Text.NativeRendering // qmllint disable unqualified
            color: modelData.colour
            style: Text.Outline // what moves behind it does not blur it
            styleColor: "#020604"
            font: modelData.font
            horizontalAlignment: modelData.centred ? Text.AlignHCenter : Text.AlignLeft
            wrapMode: several ? Text.WordWrap : Text.NoWrap
            elide: modelData.width > 0 ? Text.ElideRight : Text.ElideNone
            maximumLineCount: modelData.lines

            Rectangle {
                anchors.centerIn: parent
                z: -1
                width: parent.contentWidth + 24
                height: parent.contentHeight + 12
                radius: 6
                visible: parent.modelData.backed
                color: "#c0020604"
            }
        }
    }
}
