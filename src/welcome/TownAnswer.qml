import QtQuick
import Kelo.Welcome

Answer {
    id: answer

    field: town

    Field {
        id: town

        width: parent.width
        placeholder: qsTr("Your town or city")
        text: answer.questions.answers.city
        onEdited: text => answer.questions.answers.city = text
        hint: answer.questions.hint
    }

    Choices {
        width: parent.width
        label: qsTr("Temperature")
        texts: [qsTr("Celsius"), qsTr("Fahrenheit")]
        current: answer.questions.answers.fahrenheit ? 1 : 0
        hint: answer.questions.hint
        onChosen: index => answer.questions.answers.fahrenheit = index === 1
    }
}
