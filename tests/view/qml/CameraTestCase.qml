import QtQuick 2.12
import QtTest 1.12
import com.torvik.view3d 1.0 as Torvik3d

import "qrc:/qml/view3d"

/** A fresh camera for each test, without a picture. Stands in a CameraWindow with the id window3d. */
TestCase {
    id: testCase

    readonly property int view3d: Torvik3d.CameraController.View3d
    readonly property int topView: Torvik3d.CameraController.View2dTop
    readonly property int frontView: Torvik3d.CameraController.View2dFront
    readonly property int undefinedView: Torvik3d.CameraController.ViewUndefined
    readonly property vector3d defaultPosition: Qt.vector3d(0, 350 / Math.sqrt(2), 0)
    /** 100 m away, 30 degrees above the ground, from the south. */
    readonly property vector3d tilted: Qt.vector3d(0, 50, -86.6)
    readonly property vector3d tiltedUp: Qt.vector3d(0, 0.866, 0.5)

    property var camera
    property var scene

    property Component sceneComponent: Component {
        Item {
            id: scene3d

            property alias camera: theCamera
            property alias cameraFollow: theFollow
            property vector3d cameraPosDefault: testCase.defaultPosition
            property vector3d cameraCenterDefault: Qt.vector3d(0, 0, 0)
            property vector3d cameraUpDefault: Qt.vector3d(0, 0, 1)

            width: 600
            height: 400

            property QtObject cameraHolder: Scene3DCamera {
                id: theCamera
            }
            property QtObject followHolder: CameraFollowAnimation {
                id: theFollow

                targetCamera: theCamera
            }
        }
    }

    function init() {
        window3d.splitViewMode = false
        screenManager.ongoingScreenKey = ""
        scene = createTemporaryObject(sceneComponent, window3d)
        verify(scene)
        camera = scene.camera
    }

    function near(actual, expected, tolerance) {
        verify(actual.minus(expected).length() < (tolerance || 0.01), actual + " is not " + expected)
    }

    function settle() {
        camera.animScheduler.completeAll()
    }

    function lookTilted() {
        camera.setCameraOrientation(tilted, Qt.vector3d(0, 0, 0), tiltedUp)
    }
}
