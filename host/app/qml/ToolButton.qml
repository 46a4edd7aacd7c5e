import QtQuick 2.12
import QtQuick.Controls 2.12

import "."

/** A button for a finger; the one that is on carries the accent. */
AbstractButton {
    id: button

    /** Whether what it stands for is on. In place of the base's, which a tap would turn over by itself. */
    property bool on: false
    /** Without an edge of its own, inside a frame. */
    property bool flat: false

    implicitHeight: Style.touch
    implicitWidth: Math.max(Style.touch, label.implicitWidth + 24)
    opacity: enabled ? 1 : 0.55
    hoverEnabled: false
    focusPolicy: Qt.TabFocus

    contentItem: Text {
        id: label

        text: button.text
        color: button.on ? Style.accentInk : button.enabled ? Style.ink : Style.quietInk
        font.pixelSize: Style.textSize
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
    }

    background: Rectangle {
        radius: Style.radius
        color: button.on ? Style.accent : button.down ? Style.pressed : button.flat ? "transparent" : Style.paper
        border.width: button.visualFocus ? 2 : button.flat ? 0 : 1
        border.color: button.visualFocus ? Style.accent : Style.line
    }
}
