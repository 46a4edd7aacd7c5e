import QtQuick 2.12

import "."

/** What stands in the window while no project is open. */
Rectangle {
    id: start

    signal folderWanted()

    width: Math.min(parent.width - 4 * Style.gap, 420)
    height: column.height + 4 * Style.gap
    radius: Style.radius
    color: Style.paper
    border.color: Style.line

    Column {
        id: column

        x: 2 * Style.gap
        y: 2 * Style.gap
        width: parent.width - 4 * Style.gap
        spacing: Style.gap

        Text {
            text: qsTr("No project is open")
            color: Style.ink
            font.pixelSize: 20
            font.weight: Font.DemiBold
        }
        Loader {
            width: parent.width
            active: start.visible
            sourceComponent: RecentList {}
        }
        ToolButton {
            objectName: "startFolderButton"
            width: parent.width
            on: true
            text: qsTr("Open a folder ...")
            onClicked: start.folderWanted()
        }
    }
}
