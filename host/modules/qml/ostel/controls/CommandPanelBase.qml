import QtQuick 2.12

/** The commands of a screen: its own ones at the left, and those that leave it below its middle. */
Item {
    id: panel

    default property alias leftPanel: left.data
    property alias backText: back.text
    property bool homeButtonEnabled: true
    property bool backButtonEnabled: true

    signal backButtonClicked()
    signal homeButtonClicked()

    anchors.fill: parent

    Item {
        id: left

        anchors { left: parent.left; top: parent.top; bottom: parent.bottom; margins: Raster.gap }
        width: 120
    }

    Row {
        anchors { horizontalCenter: parent.horizontalCenter; top: parent.verticalCenter; topMargin: 8 }
        spacing: Raster.gap

        CommandButton {
            id: back

            objectName: "backButton"
            text: qsTr("Cancel")
            enabled: panel.backButtonEnabled
            onClicked: panel.backButtonClicked()
        }
        CommandButton {
            objectName: "homeButton"
            visible: enabled
            text: qsTr("Start")
            enabled: panel.homeButtonEnabled
            onClicked: panel.homeButtonClicked()
        }
    }
}
