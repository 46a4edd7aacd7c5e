import QtQuick 2.12
import QtQuick.Controls 2.12
import QtQuick.Layouts 1.12
import QtQuick.Dialogs 1.3
import com.torvik.view3d 1.0 as Torvik3d

import "."

/** The whole of the application: lists at the left, the scene with its tools at the right. Expects a `viewer`. */
Rectangle {
    id: mainView

    property alias scene: sceneArea.scene
    property alias window3d: sceneArea
    readonly property bool wide: width >= 700
    /** Nothing but the scene, for a picture. */
    readonly property bool sceneOnly: viewer.sceneOnly === true
    property bool listsOpen: !sceneOnly

    color: Style.paper

    Connections {
        target: viewer

        function onRequestPose(position, center, up, viewType, animated) {
            sceneArea.goToPose(position, center, up, viewType, animated)
        }
        function onRequestView(viewType) {
            sceneArea.goToView(viewType)
        }
    }

    DropArea {
        anchors.fill: parent
        onDropped: {
            if (drop.hasUrls) {
                viewer.openProject(drop.urls[0])
            }
        }
    }

    RowLayout {
        anchors.fill: parent
        spacing: 0

        ObjectLists {
            objectName: "lists"
            Layout.fillHeight: true
            Layout.preferredWidth: sceneArea.splitViewMode ? mainView.width / 2 : mainView.wide ? 300 : mainView.width * 0.6
            visible: mainView.listsOpen || sceneArea.splitViewMode
        }

        Rectangle {
            Layout.fillHeight: true
            implicitWidth: 1
            color: Style.line
            visible: mainView.listsOpen
        }

        ColumnLayout {
            Layout.fillWidth: true
            Layout.fillHeight: true
            spacing: 0

            Flow {
                id: tools

                visible: !mainView.sceneOnly
                Layout.fillWidth: true
                Layout.margins: Style.gap
                spacing: Style.gap

                ToolButton {
                    objectName: "listsButton"
                    text: qsTr("Lists")
                    on: mainView.listsOpen
                    onClicked: mainView.listsOpen = !mainView.listsOpen
                }
                ToolButton {
                    objectName: "openButton"
                    text: qsTr("Open")
                    onClicked: appCards.show("OpenCard")
                }

                Item { width: Style.gap; height: 1 }

                Repeater {
                    model: [
                        { name: qsTr("Top"), view: Torvik3d.CameraController.View2dTop, id: "top" },
                        { name: qsTr("3D"), view: Torvik3d.CameraController.View3d, id: "3d" },
                        { name: qsTr("Front"), view: Torvik3d.CameraController.View2dFront, id: "front" }
                    ]

                    ToolButton {
                        objectName: modelData.id + "Button"
                        text: modelData.name
                        on: !!sceneArea.scene && sceneArea.scene.camera.viewType === modelData.view
                        onClicked: sceneArea.goToView(modelData.view)
                    }
                }

                Item { width: Style.gap; height: 1 }

                Repeater {
                    model: [
                        { name: qsTr("Move"), mode: Torvik3d.CameraController.Translate, id: "move" },
                        { name: qsTr("Rotate"), mode: Torvik3d.CameraController.Rotate, id: "rotate" },
                        { name: qsTr("Tilt"), mode: Torvik3d.CameraController.Tilt, id: "tilt" },
                        { name: qsTr("Zoom"), mode: Torvik3d.CameraController.Zoom, id: "zoom" }
                    ]

                    ToolButton {
                        objectName: modelData.id + "Button"
                        text: modelData.name
                        on: sceneArea.mode3dType === modelData.mode
                        onClicked: sceneArea.mode3dType = modelData.mode
                    }
                }

                ToolButton {
                    objectName: "mapButton"
                    visible: sceneArea.hasTiles
                    text: qsTr("Map")
                    on: sceneArea.mapVisible
                    onClicked: sceneArea.mapVisible = !sceneArea.mapVisible
                }
                ToolButton {
                    objectName: "fitButton"
                    text: qsTr("Fit")
                    onClicked: viewer.fit()
                }
                ToolButton {
                    objectName: "gridButton"
                    text: qsTr("Grid")
                    on: sceneArea.gridVisible
                    onClicked: sceneArea.gridVisible = !sceneArea.gridVisible
                }
                ToolButton {
                    objectName: "planButton"
                    visible: !!viewer.plans && viewer.projectOpen
                    text: qsTr("Plan")
                    on: planBar.open
                    onClicked: planBar.open = !planBar.open
                }
                ToolButton {
                    objectName: "labelsButton"
                    text: qsTr("Labels")
                    on: GlobalNav.labelsVisible
                    onClicked: GlobalNav.labelsVisible = !GlobalNav.labelsVisible
                }
                ToolButton {
                    objectName: "manholeInfoButton"
                    text: qsTr("Manhole info")
                    on: GlobalNav.manholeFullInfoVisible
                    onClicked: GlobalNav.manholeFullInfoVisible = !GlobalNav.manholeFullInfoVisible
                }
                ToolButton {
                    objectName: "labelsBackButton"
                    text: qsTr("Labels back")
                    enabled: GlobalNav.labelsVisible
                    onClicked: GlobalNav.resetLabelsPositions()
                }
                ToolButton {
                    objectName: "pictureButton"
                    text: qsTr("Picture")
                    enabled: viewer.projectOpen
                    onClicked: viewer.desk.photos.takePicture(sceneArea)
                }
                ToolButton {
                    objectName: "printButton"
                    text: qsTr("Print")
                    enabled: viewer.projectOpen
                    onClicked: viewer.desk.photos.printPage(sceneArea)
                }
                ToolButton {
                    objectName: "keysButton"
                    text: qsTr("Keys")
                    onClicked: appCards.show("KeysCard")
                }
                ToolButton {
                    objectName: "settingsButton"
                    text: qsTr("Settings")
                    onClicked: appCards.show("SettingsCard")
                }
            }

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
        cardOpen: appCards.open !== "" || hostScreens.open.length > 0
        onOpenWanted: appCards.show("OpenCard")
        onHelpWanted: appCards.show("KeysCard")
    }

    AppCards {
        id: appCards

        objectName: "appCards"
        onFolderWanted: folderDialog.active = true
        visible: !mainView.sceneOnly
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
