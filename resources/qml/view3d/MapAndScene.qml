import QtQuick 2.12
import QtQuick.Shapes 1.12

import "." as View3d

/** The map, the scene over it, and what belongs to both. Expects a window3d around it. */
Item {
    id: mapAndScene

    /** The compass's picture. */
    readonly property Item compassIcon: compassButton.icon

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
        anchors {
            top: parent.top
            left: window3d.photoAreaDashedRectangleVisible ? photoAreaDashedRectangle.left : parent.left
        }
        visible: window3d.controlsVisible && window3d.pipeViewBiggerThan40Percentage()
        camera: scene3d.camera
        onHeld: debugButtonsRow.visible = !debugButtonsRow.visible
    }

    // They show themselves; in a picture they have no place.
    Item {
        id: panels

        readonly property real begin: compassButton.x + compassButton.width

        anchors.fill: parent
        visible: window3d.controlsVisible

        Row {
            id: debugButtonsRow

            property real size: 64

            objectName: "debugButtonsRow"
            // Below the control row, which would take its taps.
            x: panels.begin
            y: compassButton.y + compassButton.height - height
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
            x: panels.begin
            width: parent.width - x
            z: 11
        }

        LocationValidInfoPanel {
            id: locationValidInfoPanel

            anchors { horizontalCenter: parent.horizontalCenter; top: parent.top }
        }
    }

    ControlRow {
        objectName: "controlRow"
        anchors { left: compassButton.right; leftMargin: 10; top: parent.top }
        visible: window3d.controlsVisible && !locationValidInfoPanel.visible
    }
}
