import QtQuick
import Kelo.Welcome

Answer {
    id: answer

    field: name

    Field {
        id: name

        width: parent.width
        placeholder: qsTr("Your name")
        text: answer.questions.answers.name
        onEdited: text => answer.questions.answers.name = text
        hint: answer.questions.hint
    }
}
