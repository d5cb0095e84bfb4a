import QtQuick
import Kelo.Hud

// One command: its key cap, and beside it what it does.
Pressable {
    id: button

    required property Link link
    required property VoiceControl voice
    required property command command
    property bool composing: false

    // What the command switches here in the display.
    readonly property var switched: ({ "#voice": voice.on, "#large": link.large, "#contrast": link.contrast })[command.send]

    label: command.description(composing)
    hint: qsTr("Key: %1").arg(command.key)
    checkable: switched !== undefined
    on: switched === true
    leftPadding: 6
    rightPadding: 6
    verticalPadding: 3

    onClicked: link.send(command.send)

    contentItem: Row {
        spacing: 12

        Rectangle {
            width: 60
            height: 22
            radius: 3
            color: button.down ? Hud.green : Hud.bg
            border.color: button.hovered ? Hud.green : Hud.faint

            HudText {
                anchors.centerIn: parent
                text: button.command.key
                font: Hud.mono(11, Font.Bold)
                color: button.down ? Hud.bg : Hud.green
            }
        }

        HudText {
            width: parent.width - 72
            topPadding: 3
            bottomPadding: 3
            text: button.label
            font: Hud.mono(12)
            wrapMode: Text.Wrap
        }
    }

    background: Rectangle {
        radius: 3
        color: Hud.green
        opacity: button.hovered ? 0.08 : 0
    }
}
