import QtQuick 2.12
import QtQuick.Controls 2.12

import "."

/** A command as a line of a menu: its text, a mark when it is on. */
AbstractButton {
    id: line

    property BarCommand command: null
    readonly property bool on: command.on

    signal chosen()

    objectName: command.name
    visible: command.shown
    enabled: command.enabled
    text: command.text
    implicitHeight: Style.bar
    opacity: enabled ? 1 : 0.55
    hoverEnabled: false
    focusPolicy: Qt.TabFocus
    onClicked: chosen()

    contentItem: Row {
        leftPadding: 12
        spacing: Style.gap

        Item {
            width: 28
            height: line.height

            Image {
                anchors.centerIn: parent
                width: 28
                height: 28
                source: line.command.icon
                visible: source != ""
                fillMode: Image.PreserveAspectFit
                smooth: true
            }
            Text {
                anchors.centerIn: parent
                visible: line.on && line.command.icon == ""
                text: "\u2713"
                color: Style.accent
                font.pixelSize: 20
                font.weight: Font.DemiBold
            }
        }
        Text {
            width: line.width - 28 - 12 - 3 * Style.gap
            height: line.height
            verticalAlignment: Text.AlignVCenter
            text: line.text
            color: line.on ? Style.accent : line.enabled ? Style.ink : Style.quietInk
            font.pixelSize: Style.textSize
            font.weight: line.on ? Font.DemiBold : Font.Normal
            elide: Text.ElideRight
        }
    }

    background: Rectangle {
        radius: Style.radius
        color: line.down ? Style.pressed : line.visualFocus ? Style.panel : "transparent"
    }
}
