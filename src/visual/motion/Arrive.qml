import QtQuick

// Lets its content arrive: faded in and risen into place, each a little after the one before.
// While it has not been shown, the content takes its space unseen.
Item {
    id: arrive

    default property alias content: holder.data
    property bool shown: false
    property int order: 0 // place in the sequence of arrivals

    implicitHeight: holder.childrenRect.height

    Item {
        id: holder

        property real part: arrive.shown ? 1 : 0

        width: arrive.width
        opacity: part
        transform: Translate {
            y: 14 * (1 - holder.part)
        }

        Behavior on part {
            SequentialAnimation {
                PauseAnimation {
                    duration: arrive.order * 130 + 150
                }
                NumberAnimation {
                    duration: 700
                    easing.type: Easing.OutQuad
                }
            }
        }
    }
}
