import QtQuick 2.12
import Qt3D.Core 2.12
import Qt3D.Render 2.12
import com.torvik.view3d 1.0 as Torvik3d

import "CameraMath.js" as CameraMath

/** The camera of the scene: its lens and default pose, and every move that no finger makes. The surroundings give
 *  window3d, scene3d and the default pose. */
Camera {
    id: camera

    property alias setCamera3dView: animations.setCamera3dView
    property alias cameraController: controller
    property alias minDist: controller.minDist
    property alias maxDist: controller.maxDist
    property alias animation2dFrontTargetDirection: animations.animation2dFrontTargetDirection
    property alias animation2dFrontTargetObjectPosition: animations.animation2dFrontTargetObjectPosition
    property alias cameraTranslationAnimation: animations.cameraTranslationAnimation
    property alias animScheduler: scheduler
    property alias states: cameraStates

    property double viewVectorLength: viewVector.length()
    /** Turns a distance that is meant for a lens of 20 degrees into one for this lens. */
    property real viewVectorLenToFovScale: CameraMath.viewVectorLenToFovScale(fieldOfView)
    /** One of Torvik3d.CameraController's view types. */
    property int viewType: Torvik3d.CameraController.View2dTop
    property bool tooFarFromOrigin: position.length() > 10000
    property bool initialized: false
    property double defaultViewVectorLength: 0
    property bool animationsRunning: false

    /** The pose to return to from split view; undefined while there is none. */
    property var lastPositionFullView
    property var lastUpVectorFullView
    property var lastViewCenterFullView
    property var lastViewType
    property var lastFollowCamViewMode

    signal cameraResetFinished()
    /** At every change of position, up vector, view centre or projection. */
    signal cameraProjectionChanged()

    projectionType: CameraLens.PerspectiveProjection
    fieldOfView: window3d.cameraFOV
    nearPlane: 1
    farPlane: 10000.0
    position: cameraPosDefault
    viewCenter: cameraCenterDefault
    upVector: cameraUpDefault

    onPositionChanged: cameraProjectionChanged()
    onUpVectorChanged: cameraProjectionChanged()
    onViewCenterChanged: cameraProjectionChanged()
    onProjectionMatrixChanged: cameraProjectionChanged()

    onAnimationsRunningChanged: controller.enabled = !animationsRunning

    onViewTypeChanged: {
        if (viewType === Torvik3d.CameraController.View3d) {
            lockYAxisNav()
        } else if (viewType === Torvik3d.CameraController.View2dFront) {
            unlockYAxisNav()
        }
        window3d.gridDisabled = viewType === Torvik3d.CameraController.View2dFront
    }

    Component.onCompleted: {
        const aspect = scene3d.height > 0 ? scene3d.width / scene3d.height : 1
        const t = Math.tan(CameraMath.radians(window3d.cameraFOV) / 2)
        aspectRatio = aspect
        left = -viewVectorLength * aspect * t
        right = viewVectorLength * aspect * t
        bottom = -viewVectorLength * t
        top = viewVectorLength * t
        // The position's y in the first term makes this the distance that the scene was meant to start from.
        defaultViewVectorLength = Qt.vector3d(cameraCenterDefault.x - cameraPosDefault.y,
                                              cameraCenterDefault.y - cameraPosDefault.y,
                                              cameraCenterDefault.z - cameraPosDefault.z).length()
        initialized = true
    }

    /** Ahead of its binding's own turn. The binding is made anew here, where it lives as long as the camera. */
    function updateViewVectorLength() {
        viewVectorLength = Qt.binding(function() { return viewVector.length() })
    }

    function groundCenter() {
        const point = Utils3D.rayPlaneIntersec(position, viewVector)
        if (point === undefined) {
            console.error("# Camera ground intersection with plane not found!")
            return viewCenter
        }
        return point
    }

    function setPose(newPosition, newCenter, newUp) {
        position = newPosition
        viewCenter = newCenter
        upVector = newUp
    }

    function resetCameraProperties() {
        // A move that went on would overwrite the default pose.
        scheduler.completeAll()
        lastPositionFullView = undefined
        lastUpVectorFullView = undefined
        lastViewCenterFullView = undefined
        lastViewType = undefined
        lastFollowCamViewMode = undefined
        setPose(cameraPosDefault, cameraCenterDefault, cameraUpDefault)
        viewType = Torvik3d.CameraController.View2dTop
    }

    function rememberCameraFullViewState() {
        scheduler.completeNow()
        if (scheduler.isAnimationRunning()) {
            console.error("Remember camera properties should not take place while animation running")
            return
        }
        lastPositionFullView = CameraMath.copy(position)
        lastUpVectorFullView = CameraMath.copy(upVector)
        lastViewCenterFullView = CameraMath.horizontal(viewCenter)
        lastViewType = viewType
        lastFollowCamViewMode = scene3d.cameraFollow.viewMode
    }

    function setCameraOrientation(newPosition, newCenter, newUp) {
        viewType = Torvik3d.CameraController.View3d
        setPose(newPosition, newCenter, newUp)
    }

    function positionCameraOnRenderable(renderable) {
        if (!renderable) {
            return
        }
        const positionDiff = CameraMath.horizontal(renderable.position.minus(viewCenter))
        animatedTranslation(positionDiff)
        lastPositionFullView = (lastPositionFullView || cameraPosDefault).plus(positionDiff)
        lastViewCenterFullView = CameraMath.horizontal((lastViewCenterFullView || cameraCenterDefault)
                                                       .plus(positionDiff))
        lastUpVectorFullView = CameraMath.copy(lastUpVectorFullView || cameraUpDefault)
    }

    function animatedTranslation(translationVector, targetDist) {
        scheduleDelayedAnimation(function() {
            if (targetDist) {
                cameraTranslationAnimation.targetDistance = targetDist
            }
            cameraTranslationAnimation.translationVector = translationVector
        })
    }

    function scheduleDelayedAnimation(callback) {
        scheduler.scheduleDelayedAnimation(callback)
    }

    function moveToPlanPosition() {
        scheduler.scheduleAnimation(animations.resetCamera)
    }

    function resetPosition() {
        scheduleDelayedAnimation(function() {
            if (viewType === Torvik3d.CameraController.View3d) {
                scheduler.scheduleAnimation(animations.resetCamera)
            } else if (viewType === Torvik3d.CameraController.View2dTop
                       || viewType === Torvik3d.CameraController.View2dFront) {
                const target = getSafeTranslation(Qt.vector3d(0, 0, 0), -defaultViewVectorLength)
                // Nothing to go to before the camera knows its usual distance.
                if (target)
                    setPose(target.position, target.viewCenter, target.upVector)
            }
        })
    }

    function startDemoTimer() {
        demoAnimationTimer.start()
    }

    function stopDemoTimer() {
        demoAnimationTimer.stop()
    }

    function toggle2dTopView() {
        if (viewType === Torvik3d.CameraController.View2dTop) {
            scheduler.scheduleAnimation(animations.setCamera3dView)
        } else if (viewType === Torvik3d.CameraController.View3d) {
            scheduler.scheduleAnimation(animations.camera2dTop)
        }
    }

    function set2dTopView() {
        if (viewType !== Torvik3d.CameraController.View2dTop) {
            scheduler.scheduleAnimation(animations.camera2dTop)
        }
    }

    function set2dFrontView() {
        scheduler.scheduleAnimation(animations.camera2dFront)
    }

    function set3dView() {
        scheduler.scheduleAnimation(animations.setCamera3dView)
    }

    function setDefaultCamera3dView() {
        set2dTopView()
        scheduler.scheduleAnimation(animations.resetCamera)
    }

    function lockYAxisNav() {
        GlobalNav.axisX = true
        GlobalNav.axisZ = true
        GlobalNav.axisY = false
    }

    function unlockYAxisNav() {
        GlobalNav.axisX = true
        GlobalNav.axisZ = true
        GlobalNav.axisY = true
    }

    function isNodeCoordinatesScreenOngoing() {
        return screenManager.ongoingScreenKey === "View3d::NodeCoordinatesScreen"
    }

    function isInspectionScreenOngoing() {
        return screenManager.ongoingScreenKey === "Screens::InspectionScreen"
    }

    function isInspectionScreen() {
        return !!pageStack.currentItem && pageStack.currentItem['_key'] === "Screens::InspectionScreen"
    }

    /** The pose after a move along a vector and to a distance; undefined if neither is given. A positive distance
     *  only brings the camera nearer, a negative one only moves it away. */
    function getSafeTranslation(translationVector, targetDistance) {
        if (CameraMath.isMissing(translationVector) && !targetDistance) {
            return undefined
        }
        const ratio = CameraMath.distanceRatio(viewVectorLength, targetDistance, viewVectorLenToFovScale)
        const targetCenter = viewCenter.plus(translationVector || Qt.vector3d(0, 0, 0))
        const targetPosition = targetCenter.minus(viewVector.times(1 / ratio))
        const up = CameraMath.safeUpVector(targetCenter.minus(targetPosition),
                                           viewType === Torvik3d.CameraController.View2dFront,
                                           viewType === Torvik3d.CameraController.View2dTop, viewVector, upVector)
        return { position: targetPosition, viewCenter: targetCenter, upVector: up.normalized() }
    }

    function restoreFullView() {
        setPose(lastPositionFullView || cameraPosDefault, lastViewCenterFullView || cameraCenterDefault,
                lastUpVectorFullView || cameraUpDefault)
        restoreFullViewModes()
    }

    function restoreFullViewModes() {
        if (lastViewType !== undefined) {
            viewType = lastViewType
        }
        if (lastFollowCamViewMode !== undefined) {
            scene3d.cameraFollow.viewMode = lastFollowCamViewMode
        }
    }

    function onSplitViewLeft() {
        if (isNodeCoordinatesScreenOngoing() && viewType === Torvik3d.CameraController.View2dFront) {
            return
        }
        if (isInspectionScreenOngoing()) {
            triggerFullViewAnimation.start()
        } else {
            restoreFullView()
        }
    }

    Torvik3d.CameraController {
        id: controller

        camera: camera
        sceneWidth: scene3d.width
        sceneHeight: scene3d.height
        scene: scene3d
        maxDist: 500000
        minDist: 5
        mode: window3d.mode3dType
        viewType: camera.viewType
    }

    property QtObject cameraStatesHolder: CameraStates {
        id: cameraStates
    }

    property QtObject schedulerHolder: AnimationsScheduler {
        id: scheduler

        onAnimationsStarted: camera.animationsRunning = true
        onAnimationsFinished: camera.animationsRunning = false
    }

    property QtObject animationsHolder: CameraAnimations {
        id: animations
    }

    property QtObject splitViewConnections: Connections {
        target: window3d

        function onSplitViewModeChanged() {
            if (!window3d.splitViewMode) {
                camera.onSplitViewLeft()
            }
        }
    }

    // The view needs time to take its new size.
    property QtObject fullViewTimer: Timer {
        id: triggerFullViewAnimation

        interval: 200
        onTriggered: scheduler.scheduleAnimation(animations.returnToLastFullView)
    }

    property QtObject demoTimer: Timer {
        id: demoAnimationTimer

        interval: 1000 / 24
        repeat: true
        triggeredOnStart: true
        onTriggered: camera.rotateAboutViewCenter(camera.rotation(0.08, Qt.vector3d(0, 1, 0)))
    }
}
