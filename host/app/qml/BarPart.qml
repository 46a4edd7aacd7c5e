import QtQuick 2.12

import "."
import "BarFit.js" as BarFit

/** One group on the bar: a button, a choice side by side, or the button of a menu. */
Item {
    id: part

    property Item owner: null
    property BarGroup group: null
    readonly property bool sideBySide: group.form !== BarGroup.Menu && bar.formOf(group) === BarFit.WIDE
    readonly property bool framed: sideBySide && group.form === BarGroup.Choice

    width: sideBySide ? buttons.width + (framed ? 2 * Style.inset : 0) : opener.width
    height: Style.bar

    Rectangle {
        anchors.fill: parent
        visible: part.framed
        radius: Style.radius
        color: Style.panel
        border.color: Style.line
    }

    Row {
        id: buttons

        x: part.framed ? Style.inset : 0
        visible: part.sideBySide

        Repeater {
            model: part.sideBySide ? part.group.commands.length : 0

            ToolButton {
                readonly property BarCommand command: part.group.commands[index]

                objectName: command.name
                visible: command.shown
                y: part.framed ? Style.inset : 0
                width: part.owner.buttonWidth(text)
                height: Style.bar - 2 * y
                flat: part.framed
                text: command.text
                on: command.on
                enabled: command.enabled
                onClicked: command.triggered()
            }
        }
    }

    ToolButton {
        id: opener

        objectName: part.sideBySide ? "" : part.group.name
        visible: !part.sideBySide
        width: Math.max.apply(null, part.group.closedTexts.map(part.owner.buttonWidth))
        height: Style.bar
        text: part.group.closedText
        on: part.owner.menu.openedBy === opener
        onClicked: part.owner.menu.toggle([part.group], opener)
    }
}
