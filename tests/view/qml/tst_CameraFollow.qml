import Qt3D.Core 2.12
import QtQuick 2.12

CameraWindow {
    id: window3d

    Component {
        id: followedComponent

        QtObject {
            property vector3d position: Qt.vector3d(10, 0, 20)
            property Transform transform: Transform {}

            signal editingFinished()
        }
    }

    CameraTestCase {
        id: testCase

        property var followed
        property var follow
        property real distance

        name: "CameraFollow"

        function prepare() {
            followed = createTemporaryObject(followedComponent, null)
            follow = scene.cameraFollow
            follow.objectFollowed = followed
            distance = 50 / camera.viewVectorLenToFovScale
        }

        function cleanup() {
            follow.active = false
            settle()
        }

        function test_theObjectIsSeenFromBehindAndAbove() {
            prepare()
            follow.active = true
            compare(camera.viewType, undefinedView)
            settle()

            near(camera.position, Qt.vector3d(10, distance, 20 - distance), 0.1)
            near(camera.viewCenter, Qt.vector3d(10, 0, 20), 0.1)
            near(camera.upVector, Qt.vector3d(0, 0.7071, 0.7071), 0.001)

            followed.position = Qt.vector3d(10, 0, 30)
            followed.editingFinished()
            settle()
            near(camera.viewCenter, Qt.vector3d(10, 0, 30), 0.1)
        }

        function test_aMoveThatStartsWithoutFollowingEndsAtOnce() {
            prepare()
            follow.initAnim(600)

            camera.animScheduler.scheduleAnimation(follow.animation)

            verify(!camera.animationsRunning)
            compare(camera.animScheduler.scheduledAnimations.length, 0)
            near(camera.viewCenter, Qt.vector3d(10, 0, 20), 0.1)
        }
    }
}
