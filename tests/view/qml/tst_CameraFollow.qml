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

        function test_theGroundIsCentredNotTheObject() {
            prepare()
            followed.position = Qt.vector3d(10, 5, 20)
            follow.active = true
            settle()

            near(camera.position, Qt.vector3d(10, distance + 5, 20 - distance), 0.1)
            // Seen at 45 degrees, the ground behind the object is as far from it as it is high.
            near(camera.viewCenter, Qt.vector3d(10, 0, 25), 0.1)
        }

        function test_theTopViewStandsAboveTheObject() {
            prepare()
            follow.viewMode = topView
            follow.active = true
            settle()

            near(camera.position, Qt.vector3d(10, 336.68, 20), 0.1)
            near(camera.viewCenter, Qt.vector3d(10, 0, 20), 0.1)
            near(camera.upVector, Qt.vector3d(0, 0, 1), 0.001)
        }

        function test_theCameraTurnsWithTheObject() {
            prepare()
            followed.transform.rotationY = 90
            follow.active = true
            settle()

            near(camera.position, Qt.vector3d(10 - distance, distance, 20), 0.1)
            near(camera.upVector, Qt.vector3d(0.7071, 0.7071, 0), 0.001)
            near(camera.viewCenter, Qt.vector3d(10, 0, 20), 0.1)
        }

        function test_anotherViewWhileFollowingMovesTheCameraThere() {
            prepare()
            follow.active = true
            settle()
            camera.viewType = topView
            follow.viewMode = topView
            compare(camera.viewType, undefinedView)
            settle()

            near(camera.position, Qt.vector3d(10, distance, 20), 0.1)
        }

        function test_theFrontViewIsNotFollowed() {
            prepare()
            follow.active = true
            settle()
            camera.viewType = topView

            follow.viewMode = frontView

            compare(camera.viewType, undefinedView)
            compare(camera.animScheduler.scheduledAnimations.length, 0)
        }

        function test_whatDoesNotFollowStays() {
            prepare()
            follow.viewMode = topView
            followed.editingFinished()
            compare(camera.viewType, topView)
            near(camera.position, defaultPosition)

            // What waits for its turn finds that nobody follows any more.
            camera.set3dView()
            follow.active = true
            followed.editingFinished()
            follow.active = false
            settle()
            near(camera.position, Qt.vector3d(0, 175, -175), 0.05)
            near(camera.viewCenter, Qt.vector3d(0, 0, 0))
        }

        function test_stepsDuringAMoveBecomeOne() {
            prepare()
            follow.active = true
            verify(camera.animationsRunning)
            for (let z = 21; z <= 30; ++z) {
                followed.position = Qt.vector3d(10, 0, z)
                followed.editingFinished()
            }

            // The move, and one step that goes to where the object is by then.
            compare(camera.animScheduler.scheduledAnimations.length, 2)
            settle()
            near(camera.viewCenter, Qt.vector3d(10, 0, 30), 0.1)
            near(camera.position, Qt.vector3d(10, distance, 30 - distance), 0.1)
            // And the next one counts again.
            followed.position = Qt.vector3d(10, 0, 31)
            followed.editingFinished()
            settle()
            near(camera.viewCenter, Qt.vector3d(10, 0, 31), 0.1)
        }

        function test_theWayOutOfSplitViewEndsTheMove() {
            prepare()
            follow.active = true
            verify(camera.animationsRunning)
            window3d.beforeSplitViewModeChanged()
            verify(camera.animationsRunning)

            window3d.splitViewMode = true
            window3d.beforeSplitViewModeChanged()

            verify(!camera.animationsRunning)
            near(camera.viewCenter, Qt.vector3d(10, 0, 20), 0.1)
        }

        function test_theMoveTakesItsTimeAndItsWay() {
            prepare()
            compare(follow.duration, 600)
            compare(follow.viewMode, view3d)
            follow.initAnim(321)
            const parts = follow.animation.animations
            compare(parts.length, 3)
            for (let i = 0; i < parts.length; ++i) {
                compare(parts[i].duration, 321)
                compare(parts[i].easing.type, Easing.InOutQuad)
                compare(parts[i].alwaysRunToEnd, true)
            }
            compare(follow.animation.alwaysRunToEnd, true)
            follow.active = true
            compare(parts[0].duration, 600)
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
