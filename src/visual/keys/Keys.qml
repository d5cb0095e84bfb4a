import QtQuick
import Kelo.Visual

// The keyboard strip. It is decoration: screen readers pass it by.
KeysItem {
    id: keys

    Labels {
        scene: keys
    }
}
