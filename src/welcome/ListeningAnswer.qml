import QtQuick
import Kelo.Welcome

Answer {
    id: answer

    Choices {
        width: parent.width
        label: qsTr("Microphone")
        texts: [qsTr("Yes, listen"), qsTr("Not now")]
        current: answer.questions.answers.listen ? 0 : 1
        hint: answer.questions.hint
        onChosen: index => answer.questions.answers.listen = index === 0
    }

    Toggle {
        width: parent.width
        questions: answer.questions
        title: qsTr("Give me my natural voice")
        description: qsTr("A free, one time download of about 400 megabytes, fetched in the background. It runs on this Mac and sounds far more human.")
        on: answer.questions.answers.natural
        onSwitched: on => answer.questions.answers.natural = on
    }
}
