import Qt3D.Render 2.12
import QtQuick 2.12
import QtTest 1.12
import com.torvik.view3d 1.0 as Torvik3d

CameraWindow {
    id: window3d

    SignalSpy {
        id: projectionSpy

        signalName: "cameraProjectionChanged"
    }

    SignalSpy {
        id: resetSpy

        signalName: "cameraResetFinished"
    }

    CameraTestCase {
        name: "Scene3DCamera"

        function cleanup() {
            projectionSpy.clear()
            resetSpy.clear()
            host.setPage("Screens::InspectionScreen")
        }

        function test_startsLookingStraightDownWithNorthAtTheTop() {
            near(camera.position, Qt.vector3d(0, 247.487, 0))
            near(camera.viewCenter, Qt.vector3d(0, 0, 0))
            near(camera.upVector, Qt.vector3d(0, 0, 1))
            compare(camera.projectionType, CameraLens.PerspectiveProjection)
            fuzzyCompare(camera.fieldOfView, 3, 1e-6)
            compare(camera.nearPlane, 1)
            compare(camera.farPlane, 10000)
            // Half the height that the lens of 3 degrees sees at the view centre.
            const top = 247.487 * Math.tan(1.5 * Math.PI / 180)
            fuzzyCompare(camera.top, top, 0.001)
            fuzzyCompare(camera.bottom, -top, 0.001)
            fuzzyCompare(camera.right, 1.5 * top, 0.001)
            fuzzyCompare(camera.left, -1.5 * top, 0.001)
            fuzzyCompare(camera.defaultViewVectorLength, 350, 0.001)
            fuzzyCompare(camera.aspectRatio, 1.5, 1e-6)
            compare(camera.viewType, topView)
            compare(camera.minDist, 5)
            compare(camera.maxDist, 500000)
            verify(camera.initialized)
            verify(!camera.tooFarFromOrigin)
        }

        function test_gesturesKnowTheSceneAndItsModes() {
            const controller = camera.cameraController
            compare(controller.camera, camera)
            compare(controller.scene, scene)
            compare(controller.sceneWidth, 600)
            compare(controller.sceneHeight, 400)
            scene.width = 500
            scene.height = 300
            compare(controller.sceneWidth, 500)
            compare(controller.sceneHeight, 300)

            window3d.mode3dType = Torvik3d.CameraController.Zoom
            compare(controller.mode, Torvik3d.CameraController.Zoom)
            window3d.mode3dType = Torvik3d.CameraController.Translate
            compare(controller.mode, Torvik3d.CameraController.Translate)
            camera.viewType = frontView
            compare(controller.viewType, frontView)
            camera.viewType = undefinedView
            compare(controller.viewType, undefinedView)
        }

        function test_everyPartOfTheProjectionTellsItsChange() {
            projectionSpy.target = camera
            camera.position = Qt.vector3d(1, 200, 3)
            compare(projectionSpy.count, 1)
            camera.upVector = Qt.vector3d(1, 0, 0)
            compare(projectionSpy.count, 2)
            camera.viewCenter = Qt.vector3d(1, 0, 3)
            compare(projectionSpy.count, 3)
            camera.fieldOfView = 4
            compare(projectionSpy.count, 4)
        }

        function test_theScaleOfDistancesFollowsTheLens() {
            fuzzyCompare(camera.viewVectorLenToFovScale, 0.148509, 1e-5)
            camera.fieldOfView = 20
            fuzzyCompare(camera.viewVectorLenToFovScale, 1, 1e-5)
            fuzzyCompare(camera.viewVectorLength, 247.487, 0.001)
            camera.position = Qt.vector3d(0, 40, -30)
            fuzzyCompare(camera.viewVectorLength, 50, 0.001)
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

        function test_safeTranslationTakesTheUpVectorOfTheView() {
            camera.upVector = Qt.vector3d(1, 0, 0)
            near(camera.getSafeTranslation(Qt.vector3d(1, 0, 0)).upVector, Qt.vector3d(0, 0, 1))
            // Straight down, the upper edge of the screen stays where it is.
            camera.viewType = undefinedView
            near(camera.getSafeTranslation(Qt.vector3d(1, 0, 0)).upVector, Qt.vector3d(1, 0, 0))
            camera.viewType = view3d
            near(camera.getSafeTranslation(Qt.vector3d(1, 0, 0)).upVector, Qt.vector3d(1, 0, 0))
            camera.viewType = frontView
            near(camera.getSafeTranslation(Qt.vector3d(1, 0, 0)).upVector, Qt.vector3d(0, 1, 0))
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

            camera.viewType = frontView
            camera.viewType = undefinedView
            verify(GlobalNav.axisY)
            verify(!window3d.gridDisabled)
        }

        function test_theHorizontalAxesAreFreeInEveryView() {
            GlobalNav.axisX = false
            GlobalNav.axisZ = false
            camera.viewType = frontView
            verify(GlobalNav.axisX)
            verify(GlobalNav.axisZ)

            GlobalNav.axisX = false
            GlobalNav.axisZ = false
            camera.viewType = view3d
            verify(GlobalNav.axisX)
            verify(GlobalNav.axisZ)
        }

        function test_theScreenIsKnownByItsKey() {
            verify(!camera.isNodeCoordinatesScreenOngoing())
            verify(!camera.isInspectionScreenOngoing())
            screenManager.ongoingScreenKey = "View3d::NodeCoordinatesScreen"
            compare(camera.isNodeCoordinatesScreenOngoing(), true)
            compare(camera.isInspectionScreenOngoing(), false)
            screenManager.ongoingScreenKey = "Screens::InspectionScreen"
            compare(camera.isNodeCoordinatesScreenOngoing(), false)
            compare(camera.isInspectionScreenOngoing(), true)

            host.setPage("Screens::InspectionScreen")
            compare(camera.isInspectionScreen(), true)
            host.setPage("View3d::NodeCoordinatesScreen")
            compare(camera.isInspectionScreen(), false)
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

        function test_aRememberedPoseMovesToTheObjectToo() {
            camera.setCameraOrientation(tilted, Qt.vector3d(0, 5, 0), tiltedUp)
            camera.rememberCameraFullViewState()
            camera.setPose(Qt.vector3d(1, 400, 2), Qt.vector3d(1, 0, 2), Qt.vector3d(0, 0, 1))

            camera.positionCameraOnRenderable({ position: Qt.vector3d(11, -3, 32) })

            near(camera.lastPositionFullView, tilted.plus(Qt.vector3d(10, 0, 30)))
            near(camera.lastViewCenterFullView, Qt.vector3d(10, 0, 30))
            near(camera.lastUpVectorFullView, tiltedUp)
            settle()
            near(camera.viewCenter, Qt.vector3d(11, 0, 32))
        }

        function test_aTranslationWithADistanceComesNearerOnce() {
            camera.animatedTranslation(Qt.vector3d(5, 0, 0), 10)
            settle()
            near(camera.position, Qt.vector3d(5, 67.335, 0))
            near(camera.viewCenter, Qt.vector3d(5, 0, 0))
            compare(camera.cameraTranslationAnimation.targetDistance, undefined)

            camera.setPose(Qt.vector3d(0, 100, 0), Qt.vector3d(0, 0, 0), Qt.vector3d(0, 0, 1))
            camera.animatedTranslation(Qt.vector3d(7, 0, 0))
            settle()
            near(camera.position, Qt.vector3d(7, 100, 0))
        }

        function test_aDistanceAloneMovesTheCamera() {
            camera.animatedTranslation(Qt.vector3d(0, 0, 0), 10)
            settle()

            near(camera.position, Qt.vector3d(0, 67.335, 0))
        }

        function test_theSameTranslationTwiceMovesTwice() {
            camera.animatedTranslation(Qt.vector3d(10, 0, 0))
            settle()
            camera.animatedTranslation(Qt.vector3d(10, 0, 0))
            settle()

            near(camera.viewCenter, Qt.vector3d(20, 0, 0))
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

        function test_thePlanPositionIsTheStart() {
            lookTilted()
            camera.moveToPlanPosition()
            verify(camera.animationsRunning)
            near(camera.position, tilted)
            settle()
            near(camera.position, defaultPosition)
            near(camera.upVector, Qt.vector3d(0, 0, 1))
            compare(camera.viewType, topView)

            camera.viewType = frontView
            resetSpy.target = camera
            camera.moveToPlanPosition()
            compare(camera.viewType, frontView)
            compare(resetSpy.count, 0)
            settle()
            compare(camera.viewType, topView)
            compare(resetSpy.count, 1)
        }

        function test_fromThe3dViewTheDefaultIsReachedThroughTheTopView() {
            lookTilted()
            resetSpy.target = camera

            camera.setDefaultCamera3dView()

            const waiting = camera.animScheduler.scheduledAnimations
            compare(waiting.length, 2)
            compare(waiting[0], camera.animationsHolder.camera2dTop)
            compare(waiting[1], camera.animationsHolder.resetCamera)
            camera.animScheduler.completeNow()
            near(camera.position, Qt.vector3d(0, 100, 0), 0.05)
            compare(resetSpy.count, 0)
            settle()
            near(camera.position, defaultPosition)
        }

        function test_resettingThePositionIn3dIsAnimated() {
            lookTilted()
            camera.resetPosition()
            verify(camera.animationsRunning)
            near(camera.position, tilted)
            settle()
            near(camera.position, defaultPosition)
            compare(camera.viewType, topView)
        }

        function test_resettingThePositionWaitsForARunningMove() {
            camera.setPose(Qt.vector3d(0, 100, 0), Qt.vector3d(0, 0, 0), Qt.vector3d(0, 0, 1))
            camera.animatedTranslation(Qt.vector3d(10, 0, 0))
            camera.resetPosition()
            near(camera.position, Qt.vector3d(0, 100, 0))
            settle()

            near(camera.position, Qt.vector3d(10, 2356.74, 0), 0.1)
        }

        function test_resettingThePositionOfAFollowingCameraDoesNothing() {
            camera.viewType = undefinedView
            camera.resetPosition()

            verify(!camera.animationsRunning)
            near(camera.position, defaultPosition)
        }

        function test_aResetForgetsTheRememberedPose() {
            camera.rememberCameraFullViewState()
            verify(camera.lastPositionFullView !== undefined)

            camera.resetCameraProperties()

            compare(camera.lastPositionFullView, undefined)
            compare(camera.lastUpVectorFullView, undefined)
            compare(camera.lastViewCenterFullView, undefined)
            compare(camera.lastViewType, undefined)
            compare(camera.lastFollowCamViewMode, undefined)
        }

        function test_theDemonstrationTurnsTheCameraUntilItIsStopped() {
            let firstStep = -1
            camera.upVectorChanged.connect(function() {
                if (firstStep < 0) {
                    firstStep = Math.abs(camera.upVector.x)
                }
            })
            camera.startDemoTimer()
            tryVerify(function() { return Math.abs(camera.upVector.x) > 0.005 })
            fuzzyCompare(firstStep, Math.sin(0.08 * Math.PI / 180), 1e-5)

            camera.stopDemoTimer()
            const stopped = camera.upVector.x
            wait(120)
            compare(camera.upVector.x, stopped)
            compare(camera.demoTimer.interval, 41)
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
            lookTilted()
            camera.states.push()
            camera.setPose(Qt.vector3d(1, 2, 3), Qt.vector3d(4, 5, 6), Qt.vector3d(0, 1, 0))
            camera.viewType = frontView

            const state = camera.states.pop()
            near(state.position, tilted)
            near(state.center, Qt.vector3d(0, 0, 0))
            near(state.up, tiltedUp)
            compare(state.viewType, view3d)

            camera.states.popAndRestore()
            near(camera.position, defaultPosition)
            near(camera.viewCenter, Qt.vector3d(0, 0, 0))
            near(camera.upVector, Qt.vector3d(0, 0, 1))
            compare(camera.viewType, topView)

            compare(camera.states.pop(), undefined)
            camera.states.popAndRestore()
            near(camera.position, defaultPosition)
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
