import QtQuick
import Kelo.Hud

// Everything in the main window: the update banner, and under it the first-run questions, the
// visualiser or the console. What is drawn by other rooms comes in as components; each place is
// empty, and takes no room, while it has none.
Item {
    id: view

    required property Link link
    required property VoiceControl voice

    property Component backdrop // behind everything
    property Component core // square, above the conversation
    property Component caption // one or two lines under the header; says by `shown` whether it shows
    property Component keyStrip // above the legend of the piano's command keys
    property Component visualiserScreen
    property Component welcomeScreen
    property Component flashFrame // over everything

    readonly property bool welcoming: link.welcome && welcomeScreen !== null
    readonly property bool visualising: link.visual && visualiserScreen !== null && !welcoming

    focus: true
    Keys.forwardTo: [console_] // keys that nothing else uses scroll it

    FocusKeeper {
        screen: view.welcoming ? welcomePlace : view.visualising ? visualiserPlace : consolePlace
    }

    Rectangle {
        anchors.fill: parent
        color: Hud.bg
    }

    Loader {
        anchors.fill: parent
        sourceComponent: view.backdrop
    }

    Item {
        id: bannerSlot

        readonly property bool shown: view.link.updateVersion !== ""
        property real arrived: shown ? 1 : 0

        width: parent.width
        height: arrived * (banner.implicitHeight + 20)
        visible: height > 0
        enabled: shown
        clip: true

        Behavior on arrived {
            NumberAnimation {
                duration: 300
                easing.type: Easing.OutCubic
            }
        }

        UpdateBanner {
            id: banner

            anchors.bottom: parent.bottom
            x: 20
            width: parent.width - 40
            most: view.height * 0.55
            link: view.link
        }
    }

    Item {
        anchors.top: bannerSlot.bottom
        anchors.bottom: parent.bottom
        width: parent.width

        ScreenFade {
            id: consolePlace

            shown: !view.welcoming && !view.visualising

            Console {
                id: console_

                anchors.fill: parent
                anchors.margins: 14
                anchors.leftMargin: 2
                anchors.rightMargin: 2 // for a scroll bar
                link: view.link
                voice: view.voice
                core: view.core
                caption: view.caption
                keyStrip: view.keyStrip
            }
        }

        ScreenFade {
            id: visualiserPlace

            shown: view.visualising

            Loader {
                anchors.fill: parent
                active: parent.visible
                sourceComponent: view.visualiserScreen
            }
        }

        ScreenFade {
            id: welcomePlace

            shown: view.welcoming

            Loader {
                anchors.fill: parent
                active: parent.visible
                sourceComponent: view.welcomeScreen
            }
        }
    }

    Loader {
        anchors.fill: parent
        sourceComponent: view.flashFrame
    }

    DropArea {
        anchors.fill: parent
        keys: ["text/uri-list"]
        onDropped: drop => {
            if (drop.hasUrls)
                view.link.playUrl(drop.urls[0]);
        }
    }
}
