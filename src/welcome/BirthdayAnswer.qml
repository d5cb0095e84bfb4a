import QtQuick
import Kelo.Welcome

Answer {
    id: answer

    Remark {
        width: parent.width
        text: answer.questions.birthday
    }

    Choices {
        width: parent.width
        label: qsTr("Month")
        texts: answer.questions.months
        labels: answer.questions.monthNames
        cell: 96
        current: answer.questions.answers.month - 1
        hint: answer.questions.hint
        onChosen: index => answer.questions.chooseMonth(index + 1)
    }

    Choices {
        width: parent.width
        label: qsTr("Day")
        texts: Array.from({ length: answer.questions.answers.dayCount }, (_, i) => String(i + 1))
        spacing: 6
        marked: false
        cell: 46
        visible: answer.questions.answers.dayCount > 0
        current: answer.questions.answers.day - 1
        hint: answer.questions.hint
        onChosen: index => answer.questions.chooseDay(index + 1)
    }
}
