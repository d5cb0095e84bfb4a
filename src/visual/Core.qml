import QtQuick
import Kelo.Visual

// The ring at the heart of the display. It is decoration: screen readers pass it by.
CoreDrawing {
    id: core

    Labels {
        scene: core
    }
}
