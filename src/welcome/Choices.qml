pragma ComponentBehavior: Bound

import QtQuick

// Answers of which one at most holds. Tab reaches the group once, at the answer that holds or else
// the first; when another comes to hold, the keyboard focus goes with it.
Flow {
    id: choices

    required property string label
    required property list<string> texts
    property list<string> labels: texts // what screen readers call them
    property string hint // what they add to that
    property int current: -1
    property bool marked: true
    property real cell: 0 // least width of each

    readonly property bool holdsFocus: {
        for (let i = 0; i < repeater.count; ++i) {
            if (repeater.itemAt(i)?.activeFocus)
                return true;
        }
        return false;
    }

    signal chosen(int index)

    spacing: 8

    Accessible.role: Accessible.Grouping
    Accessible.name: label
    Accessible.ignored: !visible

    onCurrentChanged: {
        if (holdsFocus)
            repeater.itemAt(Math.max(0, current)).forceActiveFocus();
    }

    Repeater {
        id: repeater

        model: choices.texts.length

        Choice {
            required property int index

            width: Math.max(implicitWidth, choices.cell)
            text: choices.texts[index] ?? "" // none while the row goes
            label: choices.labels[index] ?? ""
            hint: choices.hint
            marked: choices.marked
            checked: index === choices.current
            focusPolicy: index === Math.max(0, choices.current) ? Qt.TabFocus : Qt.NoFocus
            onClicked: choices.chosen(index)
        }
    }
}
