import QtQuick
import Kelo.Hud

// A newer version is on offer. It stays until the engine takes the offer back.
Item {
    id: banner

    required property Link link
    property real most: 300 // height; what does not fit scrolls
    readonly property real mostNotes: Math.min(96, most * 0.3)

    // While the banner leaves it still names what it offered.
    property string version
    property string notes

    implicitHeight: Math.min(all.contentHeight + 2, most)

    Binding {
        banner.version: banner.link.updateVersion.slice(0, 40)
        banner.notes: banner.link.updateNotes.slice(0, 4000)
        when: banner.link.updateVersion !== ""
        restoreMode: Binding.RestoreNone
    }

    Accessible.role: Accessible.Grouping
    Accessible.name: title.text
    Accessible.ignored: !visible

    Rectangle {
        anchors.fill: parent
        color: Hud.panel
        border.color: Hud.green
    }

    Corners {}

    Scroller {
        id: all

        anchors.fill: parent
        anchors.margins: 1 // the border does not fade
        inset: 13
        spacing: 10

        Glow {
            id: title

            width: parent.width
            text: qsTr("NEW UPDATE  //  VERSION %1").arg(banner.version)
            font: Hud.mono(16, Font.Normal, 4)
            wrapMode: Text.Wrap
            color: Hud.green
            Accessible.role: Accessible.Heading
            Accessible.name: text
            Accessible.ignored: !visible
        }

        Scroller {
            id: scroller

            width: parent.width
            height: Math.min(contentHeight, banner.mostNotes)
            inset: 0
            sideInset: 0
            visible: banner.notes !== ""

            Passage {
                id: notes

                width: parent.width - 14 // beside a scroll bar
                text: banner.notes
                wrapMode: Text.Wrap
                activeFocusOnTab: scroller.interactive // the arrow keys read on
                Accessible.focusable: activeFocusOnTab

                FocusRing {
                    parent: scroller
                    target: scroller
                    visible: notes.activeFocus
                }
            }
        }

        Flow {
            width: parent.width
            spacing: 12

            HudButton {
                text: qsTr("UPDATE NOW")
                label: qsTr("Update now to version %1").arg(banner.version)
                size: 13
                tracking: 3
                widest: banner.width - 32
                horizontalPadding: 20
                verticalPadding: 11
                look: HudButton.Look.Filled
                onClicked: banner.link.send("~update yes\n")
            }

            HudButton {
                text: qsTr("LATER")
                label: qsTr("Update later")
                size: 13
                tracking: 3
                widest: banner.width - 32
                horizontalPadding: 20
                verticalPadding: 11
                look: HudButton.Look.Quiet
                onClicked: banner.link.send("~update no\n")
            }
        }
    }
}
