import QtQuick
import Kelo.Visual

// The keyboard strip. It is decoration: screen readers pass it by.
KeysDrawing {
    id: keys

    Labels {
        scene: keys
    }
}
