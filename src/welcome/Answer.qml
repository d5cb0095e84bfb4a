import QtQuick
import Kelo.Welcome

// What one question can be answered with.
Column {
    required property WelcomeQuestions questions
    property Item field: null // what is typed into

    spacing: 16
}
