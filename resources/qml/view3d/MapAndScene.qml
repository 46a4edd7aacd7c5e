import QtQuick 2.12
import QtQuick.Shapes 1.12

import "." as View3d

/** The map, the scene over it, and what belongs to both. Expects a window3d around it. */
Item {
    id: mapAndScene

    /** The compass's picture. */
    readonly property Item compassIcon: compassButton.icon
    /** Of the compass, and of the zoom handles in the corners on the right. */
    readonly property real cornerSize: compassButton.width
    /** Where there is room beside it; a narrow view has none. */
    readonly property real endOfCompass: compassButton.visible ? compassButton.x + compassButton.width : 0

    Component.onCompleted: {
        window3d.screenShootArea = mapAndScene
        window3d.compass = compassButton.icon
    }

    Loader {
        id: mapLoader

        anchors.fill: parent
        active: window3d.mapWanted
        sourceComponent: MapBackground {
            objectName: "map"
        }
        onItemChanged: window3d.map = item || undefined
    }

    View3d.Scene {
        id: scene3d

        objectName: "scene"
        anchors.fill: parent
        hoverEnabled: false
        Component.onCompleted: {
            window3d.scene3d = scene3d
            window3d.map = mapLoader.item || undefined
        }
    }

    PinchControl {
        anchors.fill: scene3d
        scene: scene3d
    }

    Shape {
        id: photoAreaDashedRectangle

        objectName: "photoAreaDashedRectangle"
        anchors.centerIn: parent
        width: scene3d.height * 1.072
        height: scene3d.height
        visible: window3d.photoAreaDashedRectangleVisible

        ShapePath {
            id: frame

            readonly property real offset: 1

            strokeWidth: 2
            strokeColor: Qt.rgba(0.4, 0.4, 0.4, 1.0)
            strokeStyle: ShapePath.DashLine
            dashPattern: [1, 4]
            fillColor: "transparent"
            startX: frame.offset
            startY: frame.offset

            PathLine { x: photoAreaDashedRectangle.width - frame.offset; y: frame.offset }
            PathLine {
                x: photoAreaDashedRectangle.width - frame.offset
                y: photoAreaDashedRectangle.height - frame.offset
            }
            PathLine { x: frame.offset; y: photoAreaDashedRectangle.height - frame.offset }
            PathLine { x: frame.offset; y: frame.offset }
        }
    }

    CompassButton {
        id: compassButton

        objectName: "compassButton"
        // The frame may be wider than the view.
        x: window3d.photoAreaDashedRectangleVisible ? Math.max(0, photoAreaDashedRectangle.x) : 0
        visible: window3d.controlsVisible && window3d.pipeViewBiggerThan40Percentage()
        camera: scene3d.camera
        onHeld: debugButtonsRow.visible = !debugButtonsRow.visible
    }

    // They show themselves; in a picture they have no place.
    Item {
        id: panels

        readonly property real begin: mapAndScene.endOfCompass

        anchors.fill: parent
        z: 11
        visible: window3d.controlsVisible

        Row {
            id: debugButtonsRow

            property real size: 64

            objectName: "debugButtonsRow"
            // Not over the control row, whose taps it would take.
            x: panels.begin
            y: controlRow.y + controlRow.height
            spacing: 1
            visible: false

            DebugButton {
                caption: 'camera\nprops'
                mouseArea.onClicked: {
                    console.log("# camera pos " + scene3d.camera.position)
                    console.log("# camera vc " + scene3d.camera.viewCenter)
                    console.log("# camera up " + scene3d.camera.upVector)
                }
            }
        }

        CameraDistanceInfoPanel {
            objectName: "cameraDistanceInfoPanel"
            x: panels.begin
            width: parent.width - x
            z: 11
            margin: mapAndScene.cornerSize
            compassShown: window3d.pipeViewBiggerThan40Percentage()
        }

        LocationValidInfoPanel {
            id: locationValidInfoPanel

            objectName: "locationValidInfoPanel"
            anchors { horizontalCenter: parent.horizontalCenter; top: parent.top }
            space: parent.width - 2 * mapAndScene.cornerSize
        }
    }

    ControlRow {
        id: controlRow

        objectName: "controlRow"
        x: mapAndScene.endOfCompass + 10
        width: mapAndScene.width - mapAndScene.cornerSize - spacing - x
        visible: window3d.controlsVisible && !locationValidInfoPanel.visible
    }
}
