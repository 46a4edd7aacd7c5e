import QtQuick 2.12
import QtQuick.Controls 2.12
import QtQuick.Layouts 1.12
import QtQuick.Dialogs 1.3
import ostel.controls 1.0
import projectmanagement 1.0

import "."

/** The whole of the application: lists at the left, the scene with its tools at the right. Expects a `viewer`. */
Rectangle {
    id: mainView

    property alias scene: sceneArea.scene
    property alias window3d: sceneArea
    readonly property bool wide: width >= 700
    /** Nothing but the scene, for a picture. */
    readonly property bool sceneOnly: viewer.sceneOnly === true
    /** In a narrow window they lie over the scene. */
    property bool listsOpen: !sceneOnly && wide
    readonly property bool listsBeside: sceneArea.splitViewMode || (wide && listsOpen && !sceneOnly)
    readonly property string currentId: viewer.currentId

    color: Style.paper
    onWideChanged: listsOpen = wide && !sceneOnly
    onCurrentIdChanged: {
        if (!wide && currentId !== "")
            listsOpen = false
    }

    Connections {
        target: viewer

        function onRequestPose(position, center, up, viewType, animated) {
            sceneArea.goToPose(position, center, up, viewType, animated)
        }
        function onRequestView(viewType) {
            sceneArea.goToView(viewType)
        }
    }

    Binding {
        target: viewer
        property: "view"
        value: sceneArea
    }

    DropArea {
        anchors.fill: parent
        onDropped: {
            if (!drop.hasUrls || hostScreens.open.length > 0)
                return
            if (viewer.projectOpen && PlanKinds.knows(drop.urls[0])) {
                planBar.open = true
                planBar.choose(drop.urls[0])
            } else {
                viewer.openProject(drop.urls[0])
            }
        }
    }

    CommandBar {
        id: commandBar

        objectName: "commandBar"
        anchors { left: parent.left; right: parent.right; top: parent.top }
        height: mainView.sceneOnly ? 0 : implicitHeight
        visible: !mainView.sceneOnly
        groups: commands.groups
        menu: barMenu
    }

    ToolCommands {
        id: commands

        area: sceneArea
        listsOpen: mainView.listsOpen
        planOpen: planBar.open
        onListsToggled: mainView.listsOpen = !mainView.listsOpen
        onPlanToggled: planBar.open = !planBar.open
        onCardWanted: appCards.show(name)
        onRecordingWanted: recordingDialog.active = true
    }

    Item {
        anchors { left: parent.left; right: parent.right; top: commandBar.bottom; bottom: parent.bottom }

        ObjectLists {
            id: lists

            objectName: "lists"
            anchors { left: parent.left; top: parent.top; bottom: parent.bottom }
            z: 1
            width: sceneArea.splitViewMode ? parent.width / 2 : Math.min(300, parent.width - 56)
            visible: (mainView.listsOpen && !mainView.sceneOnly) || sceneArea.splitViewMode

            Rectangle {
                anchors { left: parent.right; top: parent.top; bottom: parent.bottom }
                width: 1
                color: Style.line
            }
        }

        ColumnLayout {
            anchors {
                left: parent.left; right: parent.right; top: parent.top; bottom: parent.bottom
                leftMargin: mainView.listsBeside ? lists.width + 1 : 0
            }
            spacing: 0

            Item {
                Layout.fillWidth: true
                Layout.fillHeight: true

                SceneArea {
                    id: sceneArea

                    anchors.fill: parent
                    controlsVisible: !mainView.sceneOnly && !screenshotPending
                }

                EmptyStart {
                    objectName: "emptyStart"
                    anchors.centerIn: parent
                    visible: !viewer.projectOpen && !viewer.busy && !mainView.sceneOnly
                    onFolderWanted: folderDialog.active = true
                }

                Rectangle {
                    id: errorBanner

                    objectName: "errorBanner"
                    visible: viewer.errorText !== "" && !mainView.sceneOnly
                    anchors { left: parent.left; right: parent.right; top: parent.top; margins: Style.gap }
                    height: Math.max(errorText.implicitHeight, dismiss.implicitHeight) + 2 * Style.gap
                    radius: Style.radius
                    color: Style.alarmPaper
                    border.color: Style.alarm

                    Text {
                        id: errorText

                        anchors {
                            left: parent.left; right: dismiss.left
                            margins: 2 * Style.gap; verticalCenter: parent.verticalCenter
                        }
                        text: viewer.errorText
                        textFormat: Text.PlainText
                        color: Style.ink
                        font.pixelSize: Style.textSize
                        wrapMode: Text.Wrap
                    }
                    ToolButton {
                        id: dismiss

                        objectName: "dismissButton"
                        anchors { right: parent.right; rightMargin: Style.gap; verticalCenter: parent.verticalCenter }
                        text: qsTr("Dismiss")
                        onClicked: viewer.dismissError()
                    }
                }

                Rectangle {
                    objectName: "progress"
                    visible: viewer.busy && !mainView.sceneOnly
                    anchors { left: parent.left; right: parent.right; bottom: parent.bottom; margins: Style.gap }
                    height: progressTexts.implicitHeight + 3 * Style.gap
                    radius: Style.radius
                    color: Style.paper
                    border.color: Style.line

                    Column {
                        id: progressTexts

                        anchors {
                            left: parent.left; right: parent.right
                            margins: 2 * Style.gap; verticalCenter: parent.verticalCenter
                        }
                        spacing: Style.gap

                        Text {
                            width: parent.width
                            text: viewer.progressText
                            color: Style.ink
                            font.pixelSize: Style.smallTextSize
                            elide: Text.ElideRight
                        }
                        Rectangle {
                            width: parent.width
                            height: 6
                            radius: 3
                            color: Style.line

                            Rectangle {
                                width: parent.width * Math.max(0, Math.min(1, viewer.progress))
                                height: parent.height
                                radius: parent.radius
                                color: Style.accent
                            }
                        }
                    }
                }
            }

            VehicleBar {
                objectName: "vehicleBar"
                visible: !mainView.sceneOnly && !!vehicle && vehicle.active
                Layout.fillWidth: true
                vehicle: viewer.vehicle || null
            }

            PlanBar {
                id: planBar

                objectName: "planBar"
                Layout.fillWidth: true
                plans: viewer.plans || null
                area: sceneArea
                shown: viewer.projectOpen && !mainView.sceneOnly
            }

            ObjectTools {
                objectName: "objectTools"
                visible: !mainView.sceneOnly
                Layout.fillWidth: true
                scene: sceneArea.scene
                view: sceneArea
            }

            Readout {
                visible: !mainView.sceneOnly
                Layout.fillWidth: true
                scene: sceneArea.scene
            }
        }
    }

    HostScreens {
        id: hostScreens

        objectName: "hostScreens"
        visible: !mainView.sceneOnly
        onOverviewRequested: {
            mainView.listsOpen = true
            if (objectId !== "")
                viewer.goTo(objectId)
        }
    }

    KeyCommands {
        window3d: sceneArea
        cardOpen: appCards.open !== "" || hostScreens.open.length > 0 || barMenu.open
        onOpenWanted: appCards.show("OpenCard")
        onHelpWanted: appCards.show("KeysCard")
    }

    BarMenu {
        id: barMenu
    }

    AppCards {
        id: appCards

        objectName: "appCards"
        onFolderWanted: folderDialog.active = true
        visible: !mainView.sceneOnly
    }

    Loader {
        id: recordingDialog

        active: false
        sourceComponent: FileDialog {
            title: qsTr("Play a recording")
            nameFilters: ["*.csv"]
            Component.onCompleted: open()
            onAccepted: {
                const problem = viewer.inspections.load(fileUrl)
                recordingDialog.active = false
                if (problem !== "")
                    MessageBox.error(qsTr("Play a recording"), problem)
            }
            onRejected: recordingDialog.active = false
        }
    }

    Loader {
        id: folderDialog

        active: false
        sourceComponent: FileDialog {
            title: qsTr("Open a project's folder")
            selectFolder: true
            Component.onCompleted: open()
            onAccepted: {
                viewer.openProject(fileUrl)
                folderDialog.active = false
            }
            onRejected: folderDialog.active = false
        }
    }
}
