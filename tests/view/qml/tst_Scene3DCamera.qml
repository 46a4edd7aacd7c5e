import QtQuick 2.12

CameraWindow {
    id: window3d

    CameraTestCase {
        name: "Scene3DCamera"

        function test_startsLookingStraightDownWithNorthAtTheTop() {
            near(camera.position, Qt.vector3d(0, 247.487, 0))
            near(camera.viewCenter, Qt.vector3d(0, 0, 0))
            near(camera.upVector, Qt.vector3d(0, 0, 1))
            fuzzyCompare(camera.fieldOfView, 3, 1e-6)
            fuzzyCompare(camera.defaultViewVectorLength, 350, 0.001)
            fuzzyCompare(camera.aspectRatio, 1.5, 1e-6)
            compare(camera.viewType, topView)
            compare(camera.minDist, 5)
            compare(camera.maxDist, 500000)
            verify(camera.initialized)
            verify(!camera.tooFarFromOrigin)
        }

        function test_safeTranslationWithoutArgumentsIsUndefined() {
            compare(camera.getSafeTranslation(undefined, undefined), undefined)
            compare(camera.getSafeTranslation(Qt.vector3d(0, 0, 0), 0), undefined)
        }

        function test_aNegativeDistanceMovesANearCameraOut() {
            const target = camera.getSafeTranslation(Qt.vector3d(0, 0, 0), -350)

            // 350 m of a lens of 20 degrees are 350 / 0.14851 m of this one.
            near(target.position, Qt.vector3d(0, 2356.74, 0), 0.1)
            near(target.viewCenter, Qt.vector3d(0, 0, 0))
            near(target.upVector, Qt.vector3d(0, 0, 1))
        }

        function test_aNegativeDistanceLeavesAFarCameraWhereItIs() {
            camera.setPose(Qt.vector3d(0, 5000, 0), Qt.vector3d(0, 0, 0), Qt.vector3d(0, 0, 1))

            near(camera.getSafeTranslation(Qt.vector3d(0, 0, 0), -350).position, Qt.vector3d(0, 5000, 0))
        }

        function test_aPositiveDistanceOnlyBringsTheCameraNearer() {
            near(camera.getSafeTranslation(Qt.vector3d(0, 0, 0), 350).position, camera.position)
            near(camera.getSafeTranslation(Qt.vector3d(0, 0, 0), 10).position, Qt.vector3d(0, 67.335, 0))
        }

        function test_safeTranslationKeepsTheDirectionAndStraightensUp() {
            camera.setCameraOrientation(Qt.vector3d(30, 50, -40), Qt.vector3d(0, 0, 0), Qt.vector3d(0.3, 1, 0))
            const target = camera.getSafeTranslation(Qt.vector3d(10, 0, 20), undefined)

            near(target.position, Qt.vector3d(40, 50, -20))
            near(target.viewCenter, Qt.vector3d(10, 0, 20))
            fuzzyCompare(target.upVector.dotProduct(camera.viewVector), 0, 1e-3)
            fuzzyCompare(target.upVector.length(), 1, 1e-5)
            // No roll: up lies in the vertical plane of the view.
            fuzzyCompare(target.upVector.x * camera.viewVector.z - target.upVector.z * camera.viewVector.x, 0, 1e-3)
        }

        function test_the3dViewReturnsToTheTiltBeforeTheTopView() {
            camera.setCameraOrientation(Qt.vector3d(0, 50, -86.6), Qt.vector3d(0, 0, 0), Qt.vector3d(0, 0.866, 0.5))

            camera.set2dTopView()
            settle()
            compare(camera.viewType, topView)
            near(camera.position, Qt.vector3d(0, 100, 0), 0.05)
            near(camera.upVector, Qt.vector3d(0, 0, 1), 0.001)

            camera.set3dView()
            settle()
            compare(camera.viewType, view3d)
            near(camera.position, Qt.vector3d(0, 50, -86.6), 0.1)
            near(camera.upVector, Qt.vector3d(0, 0.866, 0.5), 0.01)
        }

        function test_the3dViewReturnsToTheTiltBeforeTheFrontView() {
            camera.setCameraOrientation(Qt.vector3d(0, 50, -86.6), Qt.vector3d(0, 0, 0), Qt.vector3d(0, 0.866, 0.5))

            camera.set2dFrontView()
            settle()
            compare(camera.viewType, frontView)
            near(camera.position, Qt.vector3d(0, 0, -100), 0.05)
            near(camera.upVector, Qt.vector3d(0, 1, 0), 0.001)

            camera.set3dView()
            settle()
            near(camera.position, Qt.vector3d(0, 50, -86.6), 0.1)
        }

        function test_theFirst3dViewTilts45Degrees() {
            camera.set3dView()
            settle()

            near(camera.position, Qt.vector3d(0, 175, -175), 0.05)
            near(camera.upVector, Qt.vector3d(0, 0.7071, 0.7071), 0.001)
        }

        function test_topToFrontTurnsAboutTheTiltAxis() {
            camera.set2dFrontView()
            settle()

            near(camera.position, Qt.vector3d(0, 0, -247.487), 0.05)
            near(camera.upVector, Qt.vector3d(0, 1, 0))
        }

        function test_theFrontViewLooksAtAGivenObject() {
            camera.animation2dFrontTargetObjectPosition = Qt.vector3d(5, 2, 7)
            camera.animation2dFrontTargetDirection = Qt.vector3d(0, 0, 100)
            camera.set2dFrontView()
            settle()

            near(camera.position, Qt.vector3d(5, 2, -93))
            near(camera.viewCenter, Qt.vector3d(5, 2, 7))
            near(camera.animation2dFrontTargetDirection, Qt.vector3d(0, 0, 0))
        }

        function test_viewsLockTheVerticalAndTheGrid() {
            camera.viewType = frontView
            verify(GlobalNav.axisY)
            verify(window3d.gridDisabled)

            camera.viewType = view3d
            verify(!GlobalNav.axisY)
            verify(!window3d.gridDisabled)

            camera.viewType = frontView
            camera.viewType = topView
            verify(GlobalNav.axisY)
            verify(!window3d.gridDisabled)
        }

        function test_togglingGoesBetweenTopAnd3dOnly() {
            camera.toggle2dTopView()
            settle()
            compare(camera.viewType, view3d)
            camera.toggle2dTopView()
            settle()
            compare(camera.viewType, topView)

            camera.viewType = frontView
            camera.toggle2dTopView()
            verify(!camera.animScheduler.isAnimationRunning())
            compare(camera.viewType, frontView)
        }

        function test_gesturesRestWhileTheCameraMovesItself() {
            camera.set3dView()
            verify(camera.animationsRunning)
            verify(!camera.cameraController.enabled)

            settle()
            verify(!camera.animationsRunning)
            verify(camera.cameraController.enabled)
        }

        function test_positioningOnAnObjectMovesTheRememberedPoseAlong() {
            camera.positionCameraOnRenderable({ position: Qt.vector3d(12, -3, 34) })
            settle()

            near(camera.viewCenter, Qt.vector3d(12, 0, 34))
            near(camera.position, Qt.vector3d(12, 247.487, 34))
            near(camera.lastPositionFullView, Qt.vector3d(12, 247.487, 34))
            near(camera.lastViewCenterFullView, Qt.vector3d(12, 0, 34))
            near(camera.lastUpVectorFullView, Qt.vector3d(0, 0, 1))
        }

        function test_theSameTranslationTwiceMovesTwice() {
            camera.animatedTranslation(Qt.vector3d(10, 0, 0))
            settle()
            camera.animatedTranslation(Qt.vector3d(10, 0, 0))
            settle()

            near(camera.viewCenter, Qt.vector3d(20, 0, 0))
        }

        function test_leavingSplitViewReturnsToTheRememberedPose() {
            camera.setCameraOrientation(Qt.vector3d(0, 50, -86.6), Qt.vector3d(0, 3, 0), Qt.vector3d(0, 0.866, 0.5))
            camera.rememberCameraFullViewState()
            window3d.splitViewMode = true
            camera.setPose(Qt.vector3d(1, 2, 3), Qt.vector3d(4, 5, 6), Qt.vector3d(0, 1, 0))

            window3d.splitViewMode = false

            near(camera.position, Qt.vector3d(0, 50, -86.6))
            near(camera.viewCenter, Qt.vector3d(0, 0, 0))
            compare(camera.viewType, view3d)
        }

        function test_duringAnInspectionTheReturnIsAnimated() {
            camera.setCameraOrientation(Qt.vector3d(0, 50, -86.6), Qt.vector3d(0, 0, 0), Qt.vector3d(0, 0.866, 0.5))
            camera.rememberCameraFullViewState()
            window3d.splitViewMode = true
            camera.viewType = topView
            camera.setPose(Qt.vector3d(0, 9, 0), Qt.vector3d(0, 0, 0), Qt.vector3d(0, 0, 1))
            screenManager.ongoingScreenKey = "Screens::InspectionScreen"

            window3d.splitViewMode = false
            near(camera.position, Qt.vector3d(0, 9, 0))
            tryVerify(function() { return camera.animationsRunning })
            compare(camera.viewType, view3d)
            settle()
            near(camera.position, Qt.vector3d(0, 50, -86.6))
            compare(camera.viewType, view3d)
        }

        function test_nodeCoordinatesInFrontViewKeepTheCamera() {
            camera.rememberCameraFullViewState()
            window3d.splitViewMode = true
            camera.viewType = frontView
            camera.setPose(Qt.vector3d(0, 0, -9), Qt.vector3d(0, 0, 0), Qt.vector3d(0, 1, 0))
            screenManager.ongoingScreenKey = "View3d::NodeCoordinatesScreen"

            window3d.splitViewMode = false

            near(camera.position, Qt.vector3d(0, 0, -9))
        }

        function test_resettingReturnsToTheStart() {
            let resets = 0
            camera.cameraResetFinished.connect(function() { ++resets })
            camera.set3dView()
            camera.setDefaultCamera3dView()
            settle()

            near(camera.position, Qt.vector3d(0, 247.487, 0))
            compare(camera.viewType, topView)
            compare(resets, 1)
        }

        function test_noMoveOutlivesAReset() {
            camera.set3dView()
            camera.set2dFrontView()
            wait(50)

            camera.resetCameraProperties()

            verify(!camera.animationsRunning)
            near(camera.position, Qt.vector3d(0, 247.487, 0))
            near(camera.viewCenter, Qt.vector3d(0, 0, 0))
            near(camera.upVector, Qt.vector3d(0, 0, 1))
            compare(camera.viewType, topView)
        }

        function test_resettingThePositionIn2dMovesOutAtOnce() {
            camera.resetPosition()

            near(camera.position, Qt.vector3d(0, 2356.74, 0), 0.1)
        }

        function test_statesAreAStack() {
            camera.states.push()
            camera.setCameraOrientation(Qt.vector3d(1, 2, 3), Qt.vector3d(4, 5, 6), Qt.vector3d(0, 1, 0))
            camera.states.popAndRestore()

            near(camera.position, Qt.vector3d(0, 247.487, 0))
            compare(camera.viewType, topView)
            compare(camera.states.pop(), undefined)
        }

        function test_theGroundCentreLiesOnTheGround() {
            camera.setCameraOrientation(Qt.vector3d(0, 50, -50), Qt.vector3d(0, 25, -25), Qt.vector3d(0, 1, 1))
            near(camera.groundCenter(), Qt.vector3d(0, 0, 0))

            camera.setPose(Qt.vector3d(0, 50, -50), Qt.vector3d(0, 50, 0), Qt.vector3d(0, 1, 0))
            host.expectError("# Camera ground intersection with plane not found!")
            near(camera.groundCenter(), Qt.vector3d(0, 50, 0))
        }

        function test_beyondTenKilometresTheCameraIsTooFar() {
            camera.setPose(Qt.vector3d(0, 10001, 0), Qt.vector3d(0, 0, 0), Qt.vector3d(0, 0, 1))
            verify(camera.tooFarFromOrigin)
            camera.setPose(Qt.vector3d(0, 9999, 0), Qt.vector3d(0, 0, 0), Qt.vector3d(0, 0, 1))
            verify(!camera.tooFarFromOrigin)
        }
    }
}
