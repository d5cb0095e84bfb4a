import QtQuick
import Kelo.Welcome

Answer {
    id: answer

    spacing: 10

    Toggle {
        width: parent.width
        title: qsTr("Larger captions")
        description: qsTr("Everything I say is shown in bigger type.")
        on: answer.questions.answers.large
        onClicked: answer.questions.answers.large = !on
    }

    Toggle {
        width: parent.width
        title: qsTr("High contrast")
        description: qsTr("Brighter text on a darker background.")
        on: answer.questions.answers.contrast
        onClicked: answer.questions.answers.contrast = !on
    }

    Toggle {
        width: parent.width
        title: qsTr("I use a screen reader")
        description: qsTr("I’ll describe things in words and never point at the screen.")
        on: answer.questions.answers.reader
        onClicked: answer.questions.answers.reader = !on
    }

    Toggle {
        width: parent.width
        title: qsTr("I play piano or make music")
        description: qsTr("Lessons, a band that follows you, and help with your ideas.")
        on: answer.questions.answers.plays
        onClicked: answer.questions.answers.plays = !on
    }
}
