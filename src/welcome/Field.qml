import QtQuick
import Kelo.Hud

// A line to type into.
FocusScope {
    id: field

    required property string placeholder
    property string hint // what screen readers add to that
    property alias text: input.text

    signal edited(string text)

    implicitHeight: Math.max(56, asked.implicitHeight + 24)

    Rectangle {
        anchors.fill: parent
        color: Hud.bg
        border.color: input.activeFocus ? Hud.green : Hud.dim
        radius: 4
    }

    HudText {
        id: asked

        anchors.left: input.left
        anchors.right: input.right
        anchors.verticalCenter: input.verticalCenter
        text: field.placeholder
        visible: input.text === "" && input.preeditText === ""
        font: input.font
        color: Hud.dim
        wrapMode: Text.Wrap
    }

    TextInput {
        id: input

        anchors.fill: parent
        anchors.leftMargin: 16
        anchors.rightMargin: 16
        focus: true
        activeFocusOnTab: true
        clip: true
        color: Hud.soft
        selectionColor: Hud.green
        selectedTextColor: Hud.bg
        selectByMouse: true
        font: Hud.mono(22)
        renderType: Hud.magnified ? TextInput.QtRendering : TextInput.NativeRendering
        verticalAlignment: TextInput.AlignVCenter
        onTextEdited: field.edited(text)

        Accessible.role: Accessible.EditableText
        Accessible.name: field.placeholder
        Accessible.description: field.hint
        Accessible.ignored: !visible
    }

    FocusRing {}
}
