import QtQuick 2.12
import QtTest 1.12
import Torvik.Geo 1.0 as TorvikGeo
import com.torvik.view3d 1.0 as Torvik3d
import view3d 1.0 as View3d

CameraWindow {
    id: window3d

    Component {
        id: sceneComponent

        View3d.Scene {
            anchors.fill: parent
        }
    }

    TestCase {
        id: testCase

        property var scene
        property var camera

        name: "Scene"
        when: windowShown

        function init() {
            scene = createTemporaryObject(sceneComponent, window3d)
            verify(scene)
            camera = scene.camera
        }

        function test_everyReadingOfTheDistanceCounterMovesTheFollowingCamera() {
            camera.set3dView()
            const waiting = camera.animScheduler.scheduledAnimations.length

            scene.sceneRoot.distanceValueChanged(1)

            compare(camera.animScheduler.scheduledAnimations.length, waiting + 1)
            camera.animScheduler.completeAll()
        }
    }
}
