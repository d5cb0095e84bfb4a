import QtQuick
import QtQuick.Layouts
import Kelo.Hud
import Kelo.Welcome

// A title with a line of description, on or off.
Pressable {
    id: toggle

    required property WelcomeQuestions questions
    required property string title
    required property string description

    signal switched(bool on)

    function speak() {
        questions.speakChoice(on ? qsTr("%1: on").arg(title) : qsTr("%1: off").arg(title));
    }

    onClicked: {
        switched(!on);
        if (activeFocus)
            speak();
    }
    onActiveFocusChanged: {
        if (activeFocus)
            speak();
    }

    leftPadding: 14
    rightPadding: 14
    verticalPadding: 10
    checkable: true
    hint: questions.hint
    label: title + ". " + description

    component Pill: Rectangle {
        id: pill

        required property bool on

        implicitWidth: Math.max(58, word.implicitWidth + 28)
        implicitHeight: 28
        radius: 14
        color: on ? Hud.green : Hud.bg
        border.color: on ? Hud.green : Hud.dim

        HudText {
            id: word

            anchors.centerIn: parent
            text: pill.on ? qsTr("ON") : qsTr("OFF")
            font: Hud.mono(12, Font.Bold)
            color: pill.on ? Hud.bg : Hud.dim
        }
    }

    contentItem: RowLayout {
        spacing: 16

        Column {
            Layout.fillWidth: true
            spacing: 3

            HudText {
                width: parent.width
                text: toggle.title
                font: Hud.mono(18, Font.Bold)
                wrapMode: Text.Wrap
            }

            HudText {
                width: parent.width
                text: toggle.description
                font: Hud.mono(14)
                wrapMode: Text.Wrap
            }
        }

        Pill {
            on: toggle.on
        }
    }

    background: Rectangle {
        color: Hud.panel
        border.color: toggle.hovered || toggle.on ? Hud.green : Hud.faint
        radius: 4
    }
}
