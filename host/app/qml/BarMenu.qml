import QtQuick 2.12
import QtQuick.Controls 2.12

import "."

/** A menu under the button that opened it, over the whole window; a touch beside it only closes it. */
Item {
    id: menu

    /** Of BarGroup; with several, each under its title. */
    property var groups: []
    property Item openedBy: null
    readonly property bool open: openedBy !== null

    function toggle(whichGroups, button) {
        const again = openedBy === button
        close()
        if (again)
            return
        groups = whichGroups
        const below = mapFromItem(button, 0, button.height)
        panel.wantedX = below.x
        panel.y = below.y + Style.gap / 2
        openedBy = button
        scroll.contentY = 0
    }

    function close() {
        openedBy = null
        groups = []
    }

    anchors.fill: parent
    visible: open
    onWidthChanged: close()

    Shortcut {
        sequence: "Escape"
        enabled: menu.open
        onActivated: menu.close()
    }

    MouseArea {
        anchors.fill: parent
        hoverEnabled: true
        onPressed: menu.close()
        onWheel: wheel.accepted = true
    }

    Rectangle {
        id: panel

        property real wantedX: 0

        objectName: "barMenu"
        x: Math.max(Style.gap, Math.min(wantedX, menu.width - width - Style.gap))
        width: Math.min(menu.width - 2 * Style.gap, 300)
        height: Math.min(menu.height - y - Style.gap, lines.height + 2 * Style.inset)
        radius: Style.radius
        color: Style.paper
        border.color: Style.line

        // A press between the lines is none beside the menu.
        MouseArea { anchors.fill: parent }

        Flickable {
            id: scroll

            anchors { fill: parent; margins: Style.inset }
            contentHeight: lines.height
            boundsBehavior: Flickable.StopAtBounds
            clip: true
            ScrollBar.vertical: ScrollBar {
                policy: lines.height > scroll.height + 1 ? ScrollBar.AlwaysOn : ScrollBar.AlwaysOff
            }

            Column {
                id: lines

                width: parent.width

                Repeater {
                    model: menu.groups

                    Column {
                        id: section

                        readonly property BarGroup group: modelData

                        width: lines.width

                        Text {
                            visible: menu.groups.length > 1 && section.group.form !== BarGroup.Button
                            height: 32
                            leftPadding: 12
                            verticalAlignment: Text.AlignBottom
                            text: section.group.title
                            color: Style.quietInk
                            font.pixelSize: Style.smallTextSize
                        }
                        Repeater {
                            model: section.group.commands.length

                            BarLine {
                                width: section.width
                                command: section.group.commands[index]
                                onChosen: {
                                    const picked = command
                                    if (!picked.switches)
                                        menu.close()
                                    picked.triggered()
                                }
                            }
                        }
                        Rectangle {
                            visible: index < menu.groups.length - 1
                            x: 12
                            width: parent.width - 24
                            height: 1
                            color: Style.line
                        }
                    }
                }
            }
        }
    }
}
