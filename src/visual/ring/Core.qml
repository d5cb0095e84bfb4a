import QtQuick
import Kelo.Visual

// The ring at the heart of the display. It is decoration: screen readers pass it by.
CoreItem {
    id: core

    property bool magnified: false

    Labels {
        scene: core
        magnified: core.magnified
    }
}
