import QtQuick 2.12
import com.torvik.view3d 1.0 as Torvik3d

/** A floor as a line across the front view, with its height. Expects a window3d around it, and the floor's index. */
Item {
    id: floor

    readonly property var camera: window3d.scene3d ? window3d.scene3d.camera : null
    property vector3d point3D: Qt.vector3d(0, 0, 0)
    property var screenY: projectPoint()

    function projectPoint() {
        return camera ? Utils3D.pointWorldToScreen(camera, point3D, width, height).y : undefined
    }

    width: parent ? parent.width : 0
    height: parent ? parent.height : 0
    visible: !!screenY && !!camera && camera.viewType === Torvik3d.CameraController.View2dFront

    onWidthChanged: screenY = projectPoint()
    onHeightChanged: screenY = projectPoint()
    onPoint3DChanged: screenY = projectPoint()
    onCameraChanged: screenY = projectPoint()

    Connections {
        target: floor.camera
        function onCameraProjectionChanged() {
            floor.screenY = floor.projectPoint()
        }
    }

    Rectangle {
        objectName: "floorLine"
        y: floor.screenY || 0
        width: parent.width
        height: 3
        color: "blue"
        opacity: 0.3
    }

    Rectangle {
        objectName: "floorLabel"
        x: 5
        y: (floor.screenY || 0) + 1.5 - height / 2
        width: label.width + 10
        height: label.height + 10
        radius: 10
        color: "lightgrey"
        border { color: "black"; width: 1 }

        Text {
            id: label

            anchors.centerIn: parent
            text: "Floor" + index + " (" + Math.round(floor.point3D.y * 1000) / 1000 + "m)"
            font { bold: false; pointSize: 10 }
        }
    }
}
