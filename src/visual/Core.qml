import QtQuick
import Kelo.Visual

// The ring at the heart of the display. It is decoration: screen readers pass it by.
CoreDrawing {
    id: core

    property bool magnified: false

    ShaderEffect {
        readonly property matrix4x4 bands: core.bands
        readonly property real level: core.level
        readonly property real time: core.flowTime

        x: core.ringPlace.x
        y: core.ringPlace.y
        width: core.ringPlace.width
        height: core.ringPlace.height
        opacity: core.ringOpacity
        fragmentShader: "qrc:/kelo/shaders/ring.frag.qsb"
    }

    ShaderEffect {
        readonly property real amplitude: core.amplitude
        readonly property real time: core.flowTime

        x: core.scopePlace.x
        y: core.scopePlace.y
        width: core.scopePlace.width
        height: core.scopePlace.height
        fragmentShader: "qrc:/kelo/shaders/scope.frag.qsb"
    }

    Labels {
        scene: core
        magnified: core.magnified
    }
}
