pragma ComponentBehavior: Bound

import QtQuick
import Kelo.Hud
import Kelo.Welcome

// The first-run questions, one at a time.
FocusScope {
    id: screen

    required property WelcomeQuestions questions
    property Component core // decoration above the question, where there is room

    readonly property bool narrow: width < 760

    focus: true
    Keys.forwardTo: [scroller]

    function placeFocus() {
        const page = pages.itemAt(0) as Page;
        (page?.firstControl() ?? screen).forceActiveFocus();
        scroller.contentY = 0;
    }

    Component.onCompleted: placeFocus()

    Binding {
        target: screen.questions
        property: "window"
        value: screen.Window.window
    }

    Connections {
        target: screen.questions

        function onAsked() {
            screen.placeFocus();
        }
    }

    Scroller {
        id: scroller

        anchors.centerIn: parent
        width: Math.min(parent.width, 940)
        height: Math.min(parent.height, contentHeight)
        inset: 24
        ground: Hud.bg
        sideInset: screen.narrow ? 20 : 40
        spacing: 16

        Loader {
            x: -18 // its drawing keeps that much clear around it
            width: 210
            height: width
            active: screen.core !== null
            visible: active && screen.height >= 780
            sourceComponent: screen.core
        }

        Repeater {
            id: pages

            model: [screen.questions.step] // a page of its own for each question

            Page {
                required property int modelData

                width: scroller.width - 2 * scroller.sideInset
                spacing: screen.narrow ? 16 : 22
                questions: screen.questions
                step: modelData
                narrow: screen.narrow
                // On a window that does not show, a picture of it say, all is there at once.
                arrived: !screen.Window.window?.visible
            }
        }
    }
}
