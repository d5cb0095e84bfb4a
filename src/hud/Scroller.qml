import QtQuick
import QtQuick.Templates as T
import Kelo.Hud

// A column that scrolls when it is higher than its place: by the arrow and page keys too, as far as
// nothing inside has a use for them. Whatever in it gets the keyboard focus is brought into view,
// also when the place or the column changes afterwards.
Flickable {
    id: scroller

    default property alias content: column.data
    property alias spacing: column.spacing
    property real inset: 10 // above and below: room for the focus ring
    property real sideInset: 15

    property color ground: Hud.panel // what it lies on
    property bool scrollsByKey: true

    readonly property Item focused: Window.activeFocusItem
    readonly property real margin: 20 // kept clear around what has the focus

    contentWidth: width
    contentHeight: column.height + 2 * inset
    boundsBehavior: Flickable.StopAtBounds
    flickableDirection: Flickable.VerticalFlick
    interactive: contentHeight > height
    clip: true

    onFocusedChanged: reveal()
    onHeightChanged: reveal()
    onContentHeightChanged: reveal()

    Keys.onPressed: event => {
        event.accepted = scrollsByKey && scrollTo(contentY + distance(event.key));
    }

    /// How far a key scrolls.
    function distance(key: int): real {
        switch (key) {
        case Qt.Key_Up:
            return -40;
        case Qt.Key_Down:
            return 40;
        case Qt.Key_PageUp:
            return -0.9 * height;
        case Qt.Key_PageDown:
            return 0.9 * height;
        case Qt.Key_Home:
            return -contentHeight;
        case Qt.Key_End:
            return contentHeight;
        }
        return 0;
    }

    /// Scrolls as far towards `y` as there is something to see; false when that is nowhere.
    function scrollTo(y: real): bool {
        const before = contentY;
        contentY = Math.max(0, Math.min(contentHeight - height, y));
        return contentY !== before;
    }

    function holds(item: Item): bool {
        for (let above = item; above; above = above.parent) {
            if (above === column)
                return true;
        }
        return false;
    }

    function reveal() {
        if (!holds(focused))
            return;
        const around = Math.max(0, Math.min(margin, (height - focused.height) / 2));
        const top = focused.mapToItem(column, 0, 0).y + inset - around;
        const bottom = top + focused.height + 2 * around;
        if (top < contentY)
            contentY = Math.max(0, top);
        else if (bottom > contentY + height)
            contentY = Math.min(top, bottom - height, contentHeight - height);
    }

    T.ScrollBar.vertical: T.ScrollBar {
        id: bar

        padding: 3
        implicitWidth: 10
        minimumSize: Math.max(0.1, 20 / Math.max(20, scroller.height))
        policy: scroller.interactive ? T.ScrollBar.AlwaysOn : T.ScrollBar.AlwaysOff
        visible: scroller.interactive
        Accessible.ignored: true

        contentItem: Rectangle {
            implicitWidth: 4
            radius: 2
            color: Hud.green
            opacity: bar.pressed || bar.hovered ? 0.9 : 0.4
        }
    }

    EdgeFade {
        parent: scroller
        ground: scroller.ground
        rotation: 180
        visible: !scroller.atYBeginning
    }

    EdgeFade {
        parent: scroller
        ground: scroller.ground
        y: scroller.height - height
        visible: !scroller.atYEnd
    }

    Column {
        id: column

        x: scroller.sideInset
        y: scroller.inset
        width: scroller.width - 2 * scroller.sideInset
    }
}
