import QtQuick 2.12
import QtQuick.Controls 2.12

import "."
import "BarFit.js" as BarFit

/** The bar over the window, always one row: what has no room as buttons goes behind fewer of them, at last behind More. */
Rectangle {
    id: bar

    /** Of BarGroup. */
    property var groups: []
    /** Where the menus open. */
    property BarMenu menu: null

    readonly property var shownGroups: groups.filter(function(group) { return group.shown })
    readonly property real moreWidth: buttonWidth(more.text)
    readonly property var forms: BarFit.fit(shownGroups.map(measured), width - 2 * Style.gap, Style.gap, moreWidth)
    readonly property var hiddenGroups: shownGroups.filter(function(group, index) {
        return bar.forms[index] === BarFit.MORE
    })

    implicitHeight: Style.bar + 2 * Style.gap
    color: Style.paper

    function buttonWidth(text) {
        return Math.max(Style.bar, Math.ceil(metrics.advanceWidth(text)) + 24)
    }

    function measured(group) {
        const closed = Math.max.apply(null, group.closedTexts.map(buttonWidth))
        let wide = 0
        for (let i = 0; i < group.commands.length; ++i) {
            if (group.commands[i].shown)
                wide += buttonWidth(group.commands[i].text)
        }
        return {
            wide: group.form === BarGroup.Menu ? closed : group.form === BarGroup.Choice ? wide + 2 * Style.inset : wide,
            closed: group.form === BarGroup.Button ? wide : closed,
            weight: group.weight
        }
    }

    function formOf(group) {
        return forms[shownGroups.indexOf(group)] || BarFit.MORE
    }

    /** Those of one end of the bar. */
    function groupsAt(end) {
        return shownGroups.filter(function(group) { return group.atEnd === end && formOf(group) !== BarFit.MORE })
    }

    onFormsChanged: menu.close()

    FontMetrics {
        id: metrics

        font.pixelSize: Style.textSize
    }

    Row {
        anchors { left: parent.left; leftMargin: Style.gap; verticalCenter: parent.verticalCenter }
        spacing: Style.gap

        Repeater {
            model: bar.groupsAt(false)

            BarPart { owner: bar; group: modelData }
        }
    }

    Row {
        anchors { right: parent.right; rightMargin: Style.gap; verticalCenter: parent.verticalCenter }
        spacing: Style.gap

        Repeater {
            model: bar.groupsAt(true)

            BarPart { owner: bar; group: modelData }
        }

        ToolButton {
            id: more

            objectName: "moreButton"
            visible: bar.hiddenGroups.length > 0
            width: bar.moreWidth
            height: Style.bar
            text: qsTr("More") + " \u25be"
            on: bar.menu.openedBy === more
            onClicked: bar.menu.toggle(bar.hiddenGroups, more)
        }
    }

    Rectangle {
        anchors { left: parent.left; right: parent.right; bottom: parent.bottom }
        height: 1
        color: Style.line
    }
}
