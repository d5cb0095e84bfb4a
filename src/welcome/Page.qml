import QtQuick
import Kelo.Hud
import Kelo.Visual
import Kelo.Welcome

// One question: what is asked, what can be answered, and the ways on. Its parts arrive one after
// the other.
Column {
    id: page

    required property WelcomeQuestions questions
    required property int step
    required property bool narrow
    property bool arrived: false

    readonly property list<string> files: ["", "NameAnswer.qml", "AssistantNameAnswer.qml",
        "TownAnswer.qml", "BirthdayAnswer.qml", "NeedsAnswer.qml", "ListeningAnswer.qml"]

    Component.onCompleted: {
        if (step > 0)
            answer.setSource(files[step], { questions: questions });
        arrived = true;
    }

    /// What the keyboard focus belongs to at first: what is typed into, or else what goes on from
    /// the first question.
    function firstControl(): Item {
        return step === 0 ? goOn : (answer.item as Answer)?.field ?? null;
    }

    Arrive {
        width: parent.width
        shown: page.arrived

        Heading {
            width: parent.width
            text: page.questions.title
            font: Hud.mono(page.narrow ? 24 : 36, Font.Bold)
            color: Hud.green
            wrapMode: Text.Wrap
        }
    }

    Arrive {
        width: parent.width
        shown: page.arrived
        order: 1

        Passage {
            width: parent.width
            text: page.questions.sub
            font: Hud.mono(page.narrow ? 16 : 20)
            lineHeight: 1.25
            wrapMode: Text.Wrap
        }
    }

    Arrive {
        width: parent.width
        shown: page.arrived
        order: 2

        Passage {
            width: parent.width
            text: page.questions.hint
            font: Hud.mono(15)
            color: Hud.dim
            wrapMode: Text.Wrap
        }
    }

    Arrive {
        width: parent.width
        shown: page.arrived
        order: 3
        visible: page.step > 0

        Loader {
            id: answer

            width: parent.width
        }
    }

    Arrive {
        width: parent.width
        shown: page.arrived
        order: 4

        Flow {
            width: parent.width
            spacing: 14

            HudButton {
                text: qsTr("BACK")
                label: qsTr("Back to the question before")
                size: 16
                widest: page.width
                verticalPadding: 13
                visible: page.step > 0
                hint: page.questions.hint
                onClicked: page.questions.back()
            }

            HudButton {
                text: qsTr("SKIP")
                label: qsTr("Skip this question")
                size: 16
                widest: page.width
                verticalPadding: 13
                hint: page.questions.hint
                onClicked: page.questions.next()
            }

            HudButton {
                id: goOn

                text: page.questions.goOnLabel
                look: HudButton.Look.Filled
                size: 16
                widest: page.width
                horizontalPadding: 26
                verticalPadding: 13
                hint: page.questions.hint
                onClicked: page.questions.next()
            }
        }
    }
}
