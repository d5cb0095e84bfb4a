import QtQuick
import Kelo.App
import Kelo.Hud

// Everything in the main window, and the shortcuts of its menu.
FocusScope {
    id: view

    required property Link link
    required property VoiceControl voice
    required property AppDelegate shell

    focus: true

    DragHandler {
        target: null
        enabled: view.shell !== null
        onActiveChanged: if (active) view.Window.window.startSystemMove()
    }

    ContentView {
        anchors.fill: parent
        link: view.link
        voice: view.voice
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
