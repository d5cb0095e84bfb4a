import QtQuick
import Kelo.Hud
import Kelo.Welcome

// The first-run questions, one at a time.
FocusScope {
    id: screen

    required property WelcomeQuestions questions
    property Component core // decoration above the question, where there is room

    readonly property bool narrow: width < 700

    focus: true

    // Where the keyboard focus is matters to the meaning of some keys.
    function moved(gained: bool, place: int) {
        if (gained)
            questions.focus = place;
        else if (questions.focus === place)
            questions.focus = WelcomeQuestions.Nowhere;
    }

    function placeFocus() {
        switch (questions.focus) {
        case WelcomeQuestions.NameField:
            return nameField.forceActiveFocus();
        case WelcomeQuestions.OwnNameField:
            return ownName.forceActiveFocus();
        case WelcomeQuestions.TownField:
            return townField.forceActiveFocus();
        default:
            return screen.forceActiveFocus();
        }
    }

    Component.onCompleted: placeFocus()

    Connections {
        target: screen.questions

        function onAsked() {
            screen.placeFocus();
        }
    }

    Scroller {
        id: scroller

        anchors.centerIn: parent
        width: Math.min(parent.width, 860)
        height: Math.min(parent.height, contentHeight)
        inset: 24
        sideInset: screen.narrow ? 20 : 40
        spacing: screen.narrow ? 14 : 20

        Loader {
            anchors.horizontalCenter: parent.horizontalCenter
            width: 190
            height: 190
            active: screen.core !== null
            visible: active && screen.height >= 760
            sourceComponent: screen.core
        }

        Heading {
            width: parent.width
            text: screen.questions.title
            font: Hud.mono(screen.narrow ? 22 : 30, Font.Bold)
            color: Hud.green
            wrapMode: Text.Wrap
        }

        HudText {
            width: parent.width
            text: screen.questions.sub
            font: Hud.mono(screen.narrow ? 15 : 17)
            lineHeight: 1.25
            wrapMode: Text.Wrap
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }

        HudText {
            width: parent.width
            text: screen.questions.hint
            font: Hud.mono(13)
            color: Hud.dim
            wrapMode: Text.Wrap
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }

        Answer {
            visible: screen.questions.step === 1

            Field {
                id: nameField

                width: parent.width
                placeholder: qsTr("Your name")
                text: screen.questions.answers.name
                onEdited: text => screen.questions.answers.name = text
                onActiveFocusChanged: screen.moved(activeFocus, WelcomeQuestions.NameField)
            }
        }

        Answer {
            visible: screen.questions.step === 2

            Choices {
                width: parent.width
                label: qsTr("Names")
                texts: screen.questions.names
                size: 17
                current: screen.questions.answers.hasOwnName ? -1 : screen.questions.answers.wake
                onHoldsFocusChanged: screen.moved(holdsFocus, WelcomeQuestions.NameChoices)
                onChosen: index => screen.questions.chooseName(index)
            }

            Field {
                id: ownName

                width: parent.width
                placeholder: qsTr("Your own name for the assistant, one word")
                text: screen.questions.answers.custom
                onEdited: text => screen.questions.answers.custom = text
                onActiveFocusChanged: screen.moved(activeFocus, WelcomeQuestions.OwnNameField)
            }

            Example {
                text: qsTr("You’ll say:  “%1, what’s the weather?”").arg(screen.questions.answers.chosen)
            }
        }

        Answer {
            visible: screen.questions.step === 3

            Field {
                id: townField

                width: parent.width
                placeholder: qsTr("Your town or city")
                text: screen.questions.answers.city
                onEdited: text => screen.questions.answers.city = text
                onActiveFocusChanged: screen.moved(activeFocus, WelcomeQuestions.TownField)
            }

            Choices {
                width: parent.width
                label: qsTr("Temperature")
                texts: [qsTr("Celsius"), qsTr("Fahrenheit")]
                size: 17
                current: screen.questions.answers.fahrenheit ? 1 : 0
                onHoldsFocusChanged: screen.moved(holdsFocus, WelcomeQuestions.UnitChoices)
                onChosen: index => screen.questions.answers.fahrenheit = index === 1
            }
        }

        Answer {
            visible: screen.questions.step === 4

            Example {
                text: screen.questions.birthday
                font: Hud.mono(20, Font.Bold)
            }

            Choices {
                width: parent.width
                label: qsTr("Month")
                texts: screen.questions.months
                labels: screen.questions.monthNames
                cell: 74
                current: screen.questions.answers.month - 1
                onHoldsFocusChanged: screen.moved(holdsFocus, WelcomeQuestions.MonthChoices)
                onChosen: index => screen.questions.chooseMonth(index + 1)
            }

            Choices {
                width: parent.width
                label: qsTr("Day")
                texts: Array.from({ length: screen.questions.answers.dayCount }, (_, i) => String(i + 1))
                spacing: 6
                marked: false
                cell: 42
                visible: screen.questions.answers.dayCount > 0
                current: screen.questions.answers.day - 1
                onHoldsFocusChanged: screen.moved(holdsFocus, WelcomeQuestions.DayChoices)
                onChosen: index => screen.questions.chooseDay(index + 1)
            }
        }

        Answer {
            visible: screen.questions.step === 5
            spacing: 10

            Toggle {
                width: parent.width
                title: qsTr("Larger captions")
                description: qsTr("Everything I say is shown in bigger type.")
                on: screen.questions.answers.large
                onClicked: screen.questions.answers.large = !on
            }

            Toggle {
                width: parent.width
                title: qsTr("High contrast")
                description: qsTr("Brighter text on a darker background.")
                on: screen.questions.answers.contrast
                onClicked: screen.questions.answers.contrast = !on
            }

            Toggle {
                width: parent.width
                title: qsTr("I use a screen reader")
                description: qsTr("I’ll describe things in words and never point at the screen.")
                on: screen.questions.answers.reader
                onClicked: screen.questions.answers.reader = !on
            }

            Toggle {
                width: parent.width
                title: qsTr("I play piano or make music")
                description: qsTr("Lessons, a band that follows you, and help with your ideas.")
                on: screen.questions.answers.plays
                onClicked: screen.questions.answers.plays = !on
            }
        }

        Answer {
            visible: screen.questions.step === 6

            Choices {
                width: parent.width
                label: qsTr("Microphone")
                texts: [qsTr("Yes, listen"), qsTr("Not now")]
                size: 17
                current: screen.questions.answers.listen ? 0 : 1
                onHoldsFocusChanged: screen.moved(holdsFocus, WelcomeQuestions.ListenChoices)
                onChosen: index => screen.questions.answers.listen = index === 0
            }

            Toggle {
                width: parent.width
                title: qsTr("Give me my natural voice")
                description: qsTr("A free, one time download of about 400 megabytes, fetched in the background. It runs on this Mac and sounds far more human.")
                on: screen.questions.answers.natural
                onClicked: screen.questions.answers.natural = !on
            }
        }

        Flow {
            width: parent.width
            topPadding: 6
            spacing: 14

            HudButton {
                text: qsTr("BACK")
                label: qsTr("Back to the question before")
                size: 14
                verticalPadding: 13
                visible: screen.questions.step > 0
                onActiveFocusChanged: screen.moved(activeFocus, WelcomeQuestions.OnButton)
                onClicked: screen.questions.back()
            }

            HudButton {
                text: qsTr("SKIP")
                label: qsTr("Skip this question")
                size: 14
                verticalPadding: 13
                onActiveFocusChanged: screen.moved(activeFocus, WelcomeQuestions.OnButton)
                onClicked: screen.questions.next()
            }

            HudButton {
                text: screen.questions.goOnLabel
                look: HudButton.Look.Filled
                size: 14
                horizontalPadding: 26
                verticalPadding: 13
                onActiveFocusChanged: screen.moved(activeFocus, WelcomeQuestions.OnButton)
                onClicked: screen.questions.next()
            }
        }
    }

    // What one question can be answered with.
    component Answer: Column {
        width: parent?.width ?? 0
        spacing: 16
    }

    component Example: HudText {
        width: parent?.width ?? 0
        font: Hud.mono(17)
        wrapMode: Text.Wrap
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }
}
