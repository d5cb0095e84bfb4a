import QtQuick
import QtQuick.Layouts
import Kelo.App
import Kelo.Hud
import Kelo.Visual as Visual

// What the caption panel shows, newest things largest. All of it stands in the main window too,
// which is where screen readers find it.
Item {
    id: view

    required property Link link
    required property VoiceControl voice
    required property Overlay overlay
    required property DisplayScale magnification

    Item {
        width: view.width / scale
        height: view.height / scale
        scale: view.magnification.factor
        transformOrigin: Item.TopLeft
        opacity: view.overlay.visible ? 1 : 0

        Behavior on opacity {
            NumberAnimation {
                duration: view.overlay.visible ? 280 : 450
                easing.type: Easing.OutCubic
            }
        }

        Rectangle {
            anchors.fill: parent
            color: Hud.bg
            opacity: view.overlay.seeThrough ? 0.98 : 1 // less would cost the text its contrast
            radius: view.overlay.seeThrough ? 14 : 0
            border.color: Hud.green
        }

        ColumnLayout {
            anchors.fill: parent
            anchors.margins: 22
            spacing: 10

            RowLayout {
                Layout.fillWidth: true
                spacing: 14

                Rectangle {
                    implicitWidth: 10
                    implicitHeight: 10
                    radius: 5
                    color: view.link.speaking ? Hud.green : "transparent"
                    border.color: Hud.green
                    border.width: 2
                }

                // A long name gives way to the state, never the other way round.
                HudText {
                    Layout.fillWidth: true
                    Layout.maximumWidth: Math.ceil(implicitWidth)
                    text: view.link.assistant
                    font: Hud.mono(13, Font.Bold, 2)
                    color: Hud.green
                    elide: Text.ElideRight
                }

                HudText {
                    text: view.link.speaking ? qsTr("SPEAKING") : qsTr("LISTENING")
                    font: Hud.mono(12, Font.Normal, 3)
                    color: Hud.dim
                }

                Item {
                    Layout.fillWidth: true
                }

                HudText {
                    text: view.link.now
                    visible: text !== ""
                    font: Hud.mono(12)
                    color: Hud.dim
                }
            }

            Rule {
                Layout.fillWidth: true
            }

            Visual.Caption {
                Layout.fillWidth: true
                Layout.fillHeight: true
                link: view.link
            }

            HudText {
                Layout.fillWidth: true
                text: qsTr("HEARD  %1").arg(view.link.heard)
                visible: view.link.heard !== ""
                font: Hud.mono(15)
                opacity: 0.85
                wrapMode: Text.Wrap
                maximumLineCount: 2
                elide: Text.ElideRight
            }

            RowLayout {
                Layout.fillWidth: true
                spacing: 14

                HudText {
                    Layout.fillWidth: true
                    text: qsTr("EARS  %1").arg(view.voice.status)
                    font: Hud.mono(11, Font.Normal, 2)
                    color: Hud.dim
                    elide: Text.ElideRight
                }

                HudText {
                    text: qsTr("NEW UPDATE  //  %1").arg(view.link.updateVersion)
                    visible: view.link.updateVersion !== ""
                    font: Hud.mono(12, Font.Bold, 2)
                    color: Hud.green
                    elide: Text.ElideRight
                    Layout.maximumWidth: 400
                }
            }
        }
    }
}
