import QtQuick
import Kelo.App
import Kelo.Hud
import Kelo.Visual as Visual
import Kelo.Welcome

// Everything in the main window, and the keys of its menu.
FocusScope {
    id: view

    required property Link link
    required property VoiceControl voice
    required property WelcomeQuestions questions
    required property DisplayScale magnification
    required property AppDelegate shell
    required property Announcer announcer

    focus: true

    DragHandler {
        target: null
        enabled: view.shell !== null
        onActiveChanged: if (active) view.Window.window.startSystemMove()
    }

    TapHandler {
        acceptedButtons: Qt.RightButton
        enabled: view.shell !== null
        onTapped: eventPoint => view.shell.openMenu(Qt.point(eventPoint.position.x, eventPoint.position.y))
    }

    ContentView {
        width: view.width / scale
        height: view.height / scale
        scale: view.magnification.factor
        transformOrigin: Item.TopLeft
        link: view.link
        voice: view.voice

        // Components reach out of themselves to what this view was given.
        // qmllint disable unqualified
        backdrop: Visual.Grid {}
        core: Visual.Core {
            link: view.link
        }
        caption: Visual.Caption {
            link: view.link
        }
        keyStrip: Visual.Keys {
            link: view.link
        }
        visualiserScreen: VisualiserScreen {
            id: visualiser

            link: view.link
            voice: view.voice
            scene: Visual.Visualiser {
                link: view.link
                captionTop: visualiser.captionTop
                textsTop: visualiser.textsTop
            }
        }
        flashFrame: Visual.FlashFrame {
            link: view.link
        }
        welcomeScreen: WelcomeScreen {
            questions: view.questions
            core: Visual.Core {
                link: view.link
            }
        }
        // qmllint enable unqualified
    }

    AnnouncementItem {
        width: 1
        height: 1
        announcer: view.announcer
        Accessible.role: Accessible.Notification
        Accessible.name: text
    }

    Shortcut {
        sequences: ["Ctrl++", "Ctrl+="]
        onActivated: view.magnification.larger()
    }
    Shortcut {
        sequence: "Ctrl+-"
        onActivated: view.magnification.smaller()
    }
    Shortcut {
        sequence: "Ctrl+0"
        onActivated: view.magnification.reset()
    }

    Shortcut {
        sequence: "Ctrl+Q"
        onActivated: view.shell.quit()
    }
    Shortcut {
        sequence: "Ctrl+W"
        onActivated: view.shell.closeWindow()
    }
    Shortcut {
        sequences: ["Ctrl+H", "Ctrl+M"]
        onActivated: view.shell.minimiseWindow()
    }
}
