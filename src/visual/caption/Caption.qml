import QtQuick
import Kelo.Visual

// What the assistant says. The drawn line is overlaid with the same text, unseen, so that it can
// be selected, copied and read by a screen reader.
CaptionItem {
    id: caption

    implicitHeight: shownText.implicitHeight

    TextEdit {
        id: shownText

        anchors.fill: parent
        visible: caption.shown
        // So little that it is not drawn at all until it has a selection to show, yet not hidden
        // from screen readers.
        opacity: selectionStart === selectionEnd ? 0.0005 : 1
        text: caption.text
        textFormat: TextEdit.PlainText
        font: caption.font
        color: "transparent"
        selectedTextColor: "transparent"
        selectionColor: "#4038ff87"
        readOnly: true
        selectByMouse: true
        activeFocusOnPress: true
        horizontalAlignment: TextEdit.AlignHCenter
        verticalAlignment: TextEdit.AlignVCenter
        wrapMode: TextEdit.WordWrap

        Accessible.role: Accessible.Paragraph
        Accessible.ignored: !visible
        Accessible.name: caption.link ? caption.link.caption : ""
    }
}
