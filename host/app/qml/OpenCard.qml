import QtQuick 2.12

import "."

/** Where the next project comes from. */
ModalCard {
    id: card

    signal folderWanted()

    caption: qsTr("Open a project")

    RecentList {
        width: parent.width
        onChosen: card.dismissed()
    }

    ToolButton {
        objectName: "chooseFolderButton"
        width: parent.width
        on: true
        text: qsTr("Choose a folder ...")
        onClicked: card.folderWanted()
    }
    ToolButton {
        objectName: "closeProjectButton"
        width: parent.width
        visible: viewer.projectOpen
        text: qsTr("Close this project")
        onClicked: {
            viewer.closeProject()
            card.dismissed()
        }
    }
    ToolButton {
        objectName: "cancelOpenButton"
        width: parent.width
        text: qsTr("Cancel")
        onClicked: card.dismissed()
    }
}
