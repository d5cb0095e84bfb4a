import QtQuick
import Kelo.Welcome

Answer {
    id: answer

    spacing: 10

    Toggle {
        width: parent.width
        questions: answer.questions
        title: qsTr("Larger captions")
        description: qsTr("Everything I say is shown in bigger type.")
        on: answer.questions.answers.large
        onSwitched: on => answer.questions.answers.large = on
    }

    Toggle {
        width: parent.width
        questions: answer.questions
        title: qsTr("High contrast")
        description: qsTr("Brighter text on a darker background.")
        on: answer.questions.answers.contrast
        onSwitched: on => answer.questions.answers.contrast = on
    }

    Toggle {
        width: parent.width
        questions: answer.questions
        title: qsTr("I use a screen reader")
        description: qsTr("I’ll describe things in words and never point at the screen.")
        on: answer.questions.answers.reader
        onSwitched: on => answer.questions.answers.reader = on
    }

    Toggle {
        width: parent.width
        questions: answer.questions
        title: qsTr("I play piano or make music")
        description: qsTr("Lessons, a band that follows you, and help with your ideas.")
        on: answer.questions.answers.plays
        onSwitched: on => answer.questions.answers.plays = on
    }
}
