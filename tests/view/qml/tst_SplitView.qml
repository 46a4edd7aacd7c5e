import QtQuick 2.12

/** The camera at the way into split view and out of it. */
CameraWindow {
    id: window3d

    CameraTestCase {
        readonly property var returnTimer: camera ? camera.fullViewTimer : null

        name: "SplitView"

        function rememberTilted() {
            lookTilted()
            scene.cameraFollow.viewMode = topView
            camera.rememberCameraFullViewState()
            scene.cameraFollow.viewMode = view3d
        }

        /** As the other half of the screen leaves it. */
        function moveAway() {
            camera.viewType = topView
            camera.setPose(Qt.vector3d(0, 9, 0), Qt.vector3d(0, 0, 0), Qt.vector3d(0, 0, 1))
        }

        function test_theRememberedPoseLooksAtTheGround() {
            camera.setCameraOrientation(tilted, Qt.vector3d(1, 3, 2), tiltedUp)
            scene.cameraFollow.viewMode = topView

            camera.rememberCameraFullViewState()

            camera.setPose(Qt.vector3d(1, 2, 3), Qt.vector3d(4, 5, 6), Qt.vector3d(0, 1, 0))
            near(camera.lastPositionFullView, tilted)
            near(camera.lastViewCenterFullView, Qt.vector3d(1, 0, 2))
            near(camera.lastUpVectorFullView, tiltedUp)
            compare(camera.lastViewType, view3d)
            compare(camera.lastFollowCamViewMode, topView)
        }

        function test_rememberingEndsTheRunningMove() {
            camera.set3dView()

            camera.rememberCameraFullViewState()

            verify(!camera.animationsRunning)
            near(camera.lastPositionFullView, Qt.vector3d(0, 175, -175), 0.05)
            compare(camera.lastViewType, view3d)
        }

        function test_betweenTwoMovesNothingIsRemembered() {
            camera.set3dView()
            camera.set2dFrontView()

            host.expectError("Remember camera properties should not take place while animation running")
            camera.rememberCameraFullViewState()

            compare(camera.lastPositionFullView, undefined)
            compare(camera.lastViewType, undefined)
            settle()
        }

        function test_leavingSplitViewReturnsToTheRememberedPose() {
            rememberTilted()
            window3d.splitViewMode = true
            moveAway()
            near(camera.position, Qt.vector3d(0, 9, 0))

            window3d.splitViewMode = false

            verify(!camera.animationsRunning)
            verify(!returnTimer.running)
            near(camera.position, tilted)
            near(camera.viewCenter, Qt.vector3d(0, 0, 0))
            near(camera.upVector, tiltedUp)
            compare(camera.viewType, view3d)
            compare(scene.cameraFollow.viewMode, topView)
        }

        function test_withoutARememberedPoseTheDefaultIsTaken() {
            window3d.splitViewMode = true
            camera.setPose(Qt.vector3d(1, 2, 3), Qt.vector3d(4, 5, 6), Qt.vector3d(0, 1, 0))

            window3d.splitViewMode = false

            near(camera.position, defaultPosition)
            near(camera.viewCenter, Qt.vector3d(0, 0, 0))
            near(camera.upVector, Qt.vector3d(0, 0, 1))
        }

        function test_anAnimatedReturnWithoutARememberedPoseGoesToTheDefault() {
            window3d.splitViewMode = true
            moveAway()
            screenManager.ongoingScreenKey = "Screens::InspectionScreen"

            window3d.splitViewMode = false
            tryVerify(function() { return camera.animationsRunning })
            settle()

            near(camera.position, defaultPosition)
            compare(camera.viewType, topView)
        }

        function test_duringAnInspectionTheReturnIsAnimated() {
            rememberTilted()
            window3d.splitViewMode = true
            moveAway()
            screenManager.ongoingScreenKey = "Screens::InspectionScreen"

            window3d.splitViewMode = false
            verify(returnTimer.running)
            compare(returnTimer.interval, 200)
            verify(!camera.animationsRunning)
            near(camera.position, Qt.vector3d(0, 9, 0))

            tryVerify(function() { return camera.animationsRunning })
            compare(camera.viewType, view3d)
            compare(scene.cameraFollow.viewMode, topView)
            verify(!returnTimer.running)
            settle()
            near(camera.position, tilted)
            near(camera.upVector, tiltedUp)
            compare(camera.viewType, view3d)
        }

        function test_nodeCoordinatesInFrontViewKeepTheCamera() {
            rememberTilted()
            window3d.splitViewMode = true
            camera.viewType = frontView
            camera.setPose(Qt.vector3d(0, 0, -9), Qt.vector3d(0, 0, 0), Qt.vector3d(0, 1, 0))
            screenManager.ongoingScreenKey = "View3d::NodeCoordinatesScreen"

            window3d.splitViewMode = false

            verify(!returnTimer.running)
            near(camera.position, Qt.vector3d(0, 0, -9))
            compare(camera.viewType, frontView)
        }

        function test_nodeCoordinatesInAnotherViewReturnToo() {
            rememberTilted()
            window3d.splitViewMode = true
            moveAway()
            screenManager.ongoingScreenKey = "View3d::NodeCoordinatesScreen"

            window3d.splitViewMode = false

            near(camera.position, tilted)
        }

        function test_theFrontViewOfAnotherScreenReturnsToo() {
            rememberTilted()
            window3d.splitViewMode = true
            moveAway()
            camera.viewType = frontView

            window3d.splitViewMode = false

            near(camera.position, tilted)
            compare(camera.viewType, view3d)
        }
    }
}
