import QtQuick
import Kelo.Welcome

Answer {
    id: answer

    field: ownName

    Choices {
        width: parent.width
        label: qsTr("Names")
        texts: answer.questions.names
        current: answer.questions.answers.hasOwnName ? -1 : answer.questions.answers.wake
        hint: answer.questions.hint
        onChosen: index => answer.questions.chooseName(index)
    }

    Field {
        id: ownName

        width: parent.width
        placeholder: qsTr("Your own name for the assistant, one word")
        text: answer.questions.answers.custom
        onEdited: text => answer.questions.answers.custom = text
        hint: answer.questions.hint
    }

    Remark {
        width: parent.width
        text: qsTr("You’ll say:  “%1, what’s the weather?”").arg(answer.questions.answers.chosen)
    }
}
