import QtQuick 2.12
import com.torvik.view3d 1.0 as Torvik3d

import "."

/** What the bar over the window offers, in groups, in the order of the bar. */
QtObject {
    id: commands

    /** The view. */
    property Item area: null
    property bool listsOpen: false
    property bool planOpen: false

    readonly property int viewType: area && area.scene ? area.scene.camera.viewType : -1
    /** Of the viewer; not there in every host of these pages. */
    readonly property QtObject inspections: viewer.inspections || null
    readonly property int mode: area ? area.mode3dType : -1

    readonly property var groups: [listsGroup, openGroup, viewGroup, modeGroup, fitGroup, layersGroup, planGroup,
        measureGroup, goToGroup, shareGroup, settingsGroup]

    signal listsToggled()
    signal planToggled()
    signal recordingWanted()
    /** A card of the application is to be shown, by the name of its file. */
    signal cardWanted(string name)

    readonly property BarGroup listsGroup: BarGroup {
        form: BarGroup.Button
        weight: 10

        BarCommand {
            name: "listsButton"
            text: qsTr("Lists")
            on: commands.listsOpen
            switches: true
            onTriggered: commands.listsToggled()
        }
    }

    readonly property BarGroup openGroup: BarGroup {
        form: BarGroup.Button
        weight: 6

        BarCommand {
            name: "openButton"
            text: qsTr("Open")
            onTriggered: commands.cardWanted("OpenCard")
        }
    }

    readonly property BarGroup viewGroup: BarGroup {
        name: "viewpointMenuButton"
        title: qsTr("Look")
        form: BarGroup.Choice
        weight: 8

        BarCommand {
            name: "topButton"
            text: qsTr("Top")
            on: commands.viewType === Torvik3d.CameraController.View2dTop
            onTriggered: commands.area.goToView(Torvik3d.CameraController.View2dTop)
        }
        BarCommand {
            name: "3dButton"
            text: qsTr("3D")
            on: commands.viewType === Torvik3d.CameraController.View3d
            onTriggered: commands.area.goToView(Torvik3d.CameraController.View3d)
        }
        BarCommand {
            name: "frontButton"
            text: qsTr("Front")
            on: commands.viewType === Torvik3d.CameraController.View2dFront
            onTriggered: commands.area.goToView(Torvik3d.CameraController.View2dFront)
        }
    }

    readonly property BarGroup modeGroup: BarGroup {
        name: "modeMenuButton"
        title: qsTr("Finger")
        form: BarGroup.Choice
        weight: 7

        BarCommand {
            name: "moveButton"
            text: qsTr("Move")
            on: commands.mode === Torvik3d.CameraController.Translate
            onTriggered: commands.area.mode3dType = Torvik3d.CameraController.Translate
        }
        BarCommand {
            name: "rotateButton"
            text: qsTr("Rotate")
            on: commands.mode === Torvik3d.CameraController.Rotate
            onTriggered: commands.area.mode3dType = Torvik3d.CameraController.Rotate
        }
        BarCommand {
            name: "tiltButton"
            text: qsTr("Tilt")
            on: commands.mode === Torvik3d.CameraController.Tilt
            onTriggered: commands.area.mode3dType = Torvik3d.CameraController.Tilt
        }
        BarCommand {
            name: "zoomButton"
            text: qsTr("Zoom")
            on: commands.mode === Torvik3d.CameraController.Zoom
            onTriggered: commands.area.mode3dType = Torvik3d.CameraController.Zoom
        }
    }

    readonly property BarGroup fitGroup: BarGroup {
        form: BarGroup.Button
        weight: 9

        BarCommand {
            name: "fitButton"
            text: qsTr("Fit")
            onTriggered: viewer.fit()
        }
    }

    readonly property BarGroup layersGroup: BarGroup {
        name: "viewMenuButton"
        title: qsTr("View")
        atEnd: true
        weight: 5

        BarCommand {
            name: "labelsButton"
            text: qsTr("Labels")
            on: GlobalNav.labelsVisible
            switches: true
            onTriggered: GlobalNav.labelsVisible = !GlobalNav.labelsVisible
        }
        BarCommand {
            name: "manholeInfoButton"
            text: qsTr("Manhole info")
            on: GlobalNav.manholeFullInfoVisible
            enabled: GlobalNav.labelsVisible
            switches: true
            onTriggered: GlobalNav.manholeFullInfoVisible = !GlobalNav.manholeFullInfoVisible
        }
        BarCommand {
            name: "observationLabelsButton"
            text: qsTr("Names of observations")
            on: GlobalNav.obsVisible
            enabled: GlobalNav.labelsVisible
            switches: true
            onTriggered: GlobalNav.obsVisible = !GlobalNav.obsVisible
        }
        BarCommand {
            name: "labelsBackButton"
            text: qsTr("Labels back")
            enabled: GlobalNav.labelsVisible
            onTriggered: GlobalNav.resetLabelsPositions()
        }
        BarCommand {
            name: "gridButton"
            text: qsTr("Grid")
            on: !!commands.area && commands.area.gridVisible
            switches: true
            onTriggered: commands.area.gridVisible = !commands.area.gridVisible
        }
        BarCommand {
            name: "mapButton"
            text: qsTr("Map")
            shown: !!commands.area && commands.area.hasTiles
            on: !!commands.area && commands.area.mapVisible
            switches: true
            onTriggered: commands.area.mapVisible = !commands.area.mapVisible
        }
        BarCommand {
            name: "shiftMapButton"
            text: qsTr("Shift the map")
            shown: !!commands.area && commands.area.hasTiles
            on: commands.mapShift.on
            enabled: commands.mapShift.possible
            onTriggered: commands.mapShift.toggle()
        }
        BarCommand {
            name: "feetButton"
            text: qsTr("Lengths in feet")
            on: units.imperial
            switches: true
            onTriggered: units.imperial = !units.imperial
        }
    }

    readonly property BarGroup planGroup: BarGroup {
        form: BarGroup.Button
        atEnd: true
        weight: 3

        BarCommand {
            name: "planButton"
            text: qsTr("Plan")
            shown: !!viewer.plans && viewer.projectOpen
            on: commands.planOpen
            onTriggered: commands.planToggled()
        }
    }

    readonly property BarGroup measureGroup: BarGroup {
        name: "measureMenuButton"
        title: qsTr("Measure")
        atEnd: true
        weight: 2

        BarCommand {
            name: "inspectButton"
            text: commands.inspections && commands.inspections.pipeName !== ""
                  ? qsTr("Inspect %1").arg(commands.inspections.pipeName) : qsTr("Inspect the selected pipe")
            enabled: !!commands.inspections && commands.inspections.possible
            onTriggered: commands.inspections.begin()
        }
        BarCommand {
            name: "leaveInspectionButton"
            text: qsTr("End the inspection")
            enabled: !!commands.inspections && commands.inspections.active
            onTriggered: commands.inspections.leave()
        }
        BarCommand {
            name: "recordingButton"
            text: qsTr("Play a recording…")
            enabled: !!commands.inspections && commands.inspections.active
            onTriggered: commands.recordingWanted()
        }
        BarCommand {
            name: "measureCommandButton"
            text: qsTr("Measure in 3D")
            on: GlobalNav.realTimeEnabled
            enabled: !!commands.inspections && commands.inspections.active
            switches: true
            onTriggered: viewer.vehicle.measuring = !viewer.vehicle.measuring
        }
    }

    readonly property MapShift mapShift: MapShift {
        area: commands.area
    }

    property GoToCommands goTo: GoToCommands {
        area: commands.area
    }
    readonly property BarGroup goToGroup: goTo.group

    readonly property BarGroup shareGroup: BarGroup {
        name: "shareMenuButton"
        title: qsTr("Share")
        atEnd: true
        weight: 1

        BarCommand {
            name: "pictureButton"
            text: qsTr("Picture")
            enabled: viewer.projectOpen
            onTriggered: viewer.desk.photos.takePicture(commands.area)
        }
        BarCommand {
            name: "printButton"
            text: qsTr("Print")
            enabled: viewer.projectOpen
            onTriggered: viewer.desk.photos.printPage(commands.area)
        }
    }

    readonly property BarGroup settingsGroup: BarGroup {
        form: BarGroup.Button
        atEnd: true
        weight: 0

        BarCommand {
            name: "settingsButton"
            text: qsTr("Settings")
            onTriggered: commands.cardWanted("SettingsCard")
        }
    }
}
