import QtQuick 2.12
import com.torvik.view3d 1.0 as Torvik3d

import "CameraMath.js" as CameraMath

/** The moves of the camera between its standard views. Each starts through the scheduler and tells it at its end. */
QtObject {
    id: cameraAnimations

    property int animationDuration: 600

    property alias cameraTranslationAnimation: cameraTranslationAnimation
    property alias camera2dTop: camera2dTop
    property alias camera2dFront: camera2dFront
    property alias setCamera3dView: setCamera3dView
    property alias resetCamera: resetCamera
    property alias returnToLastFullView: returnToLastFullView
    property alias animation2dFrontTargetDirection: camera2dFront.targetDirection
    property alias animation2dFrontTargetObjectPosition: camera2dFront.targetObjectPosition

    readonly property int view3d: Torvik3d.CameraController.View3d
    readonly property int view2dTop: Torvik3d.CameraController.View2dTop
    readonly property int view2dFront: Torvik3d.CameraController.View2dFront

    function tiltAxis() {
        return camera.upVector.crossProduct(camera.viewVector)
    }

    property list<QtObject> animations: [
        ParallelAnimation {
            id: cameraTranslationAnimation

            property var scheduled
            property var translationVector
            property var targetDistance
            /** Kept for its readers: the move itself takes the 250 ms of its type. */
            property int duration: 210

            onTranslationVectorChanged: {
                const target = camera.getSafeTranslation(translationVector, targetDistance)
                targetDistance = undefined
                if (target === undefined) {
                    return
                }
                translationPosition.to = target.position
                translationCenter.to = target.viewCenter
                translationUp.to = target.upVector
                stop()
                camera.animScheduler.scheduleAnimation(cameraTranslationAnimation)
            }
            onStarted: {
                if (!scheduled) {
                    console.error("cameraTranslationAnimation not in scheduler")
                }
            }
            onStopped: camera.animScheduler.onAnimationFinished(cameraTranslationAnimation)

            Vector3dAnimation {
                id: translationPosition

                target: camera
                property: "position"
                easing.type: Easing.InOutQuad
            }
            Vector3dAnimation {
                id: translationCenter

                target: camera
                property: "viewCenter"
                easing.type: Easing.InOutQuad
            }
            Vector3dAnimation {
                id: translationUp

                target: camera
                property: "upVector"
                easing.type: Easing.InOutQuad
            }
        },

        CameraPoseAnimation {
            id: camera2dTop

            /** Degrees below the horizon before the 2D view, for the way back. */
            property real lastTilt: 45.0

            duration: cameraAnimations.animationDuration
            targetPose: function() {
                const center = CameraMath.horizontal(camera.viewCenter)
                return {
                    position: Qt.vector3d(center.x, camera.viewVectorLength, center.z),
                    viewCenter: center,
                    // Started from the top view, only the up vector has a horizontal part.
                    upVector: CameraMath.horizontal(camera.viewVector.plus(camera.upVector)).normalized()
                }
            }

            function turn() {
                return CameraMath.turnMatrix(cameraAnimations.tiltAxis(), 90 - lastTilt)
            }
            function targetViewVector() {
                return camera.viewVector.times(turn())
            }
            function targetPosition() {
                return camera.viewCenter.minus(targetViewVector())
            }
            function targetUpVector() {
                return camera.upVector.times(turn()).normalized()
            }

            onStarted: {
                if (!scheduled) {
                    console.error("camera2dTop not in scheduler")
                }
                lastTilt = camera.viewType === cameraAnimations.view2dFront ? camera2dFront.lastTilt
                                                                           : CameraMath.tilt(camera.viewVector)
            }
            onStopped: {
                camera.viewType = cameraAnimations.view2dTop
                camera.animScheduler.onAnimationFinished(camera2dTop)
            }
        },

        CameraPoseAnimation {
            id: camera2dFront

            property real lastTilt: 45.0
            /** From where and at what to look; vectors of no length leave that to the camera. */
            property vector3d targetDirection: Qt.vector3d(0, 0, 0)
            property vector3d targetObjectPosition: Qt.vector3d(0, 0, 0)

            duration: cameraAnimations.animationDuration
            targetPose: function() {
                return {
                    position: frontPosition(),
                    viewCenter: targetObjectPosition.length() > 0 ? targetObjectPosition : camera.viewCenter,
                    upVector: Qt.vector3d(0, 1, 0)
                }
            }

            function frontPosition() {
                if (targetDirection.length() > 0) {
                    return Qt.vector3d(targetObjectPosition.x - targetDirection.x, targetObjectPosition.y,
                                       targetObjectPosition.z - targetDirection.z)
                }
                if (camera.viewType === cameraAnimations.view2dTop) {
                    const offset = camera.position.minus(camera.viewCenter)
                    const quarterTurn = CameraMath.turnMatrix(cameraAnimations.tiltAxis(), 90)
                    return camera.viewCenter.plus(offset.times(quarterTurn))
                }
                return Utils3D.camFrontPosition(camera.position, camera.viewCenter)
            }
            function turn() {
                return CameraMath.turnMatrix(cameraAnimations.tiltAxis(), -lastTilt)
            }
            function targetViewVector() {
                return targetDirection.length() > 0 ? targetDirection : camera.viewVector.times(turn())
            }
            function targetPosition() {
                return CameraMath.horizontal(camera.viewCenter).minus(targetViewVector())
            }
            function targetUpVector() {
                return camera.upVector.times(turn()).normalized()
            }

            onStarted: {
                if (!scheduled) {
                    console.log("camera2dFront not in scheduler")
                }
                lastTilt = camera.viewType === cameraAnimations.view2dTop ? camera2dTop.lastTilt
                                                                         : CameraMath.tilt(camera.viewVector)
            }
            onStopped: {
                camera.viewType = cameraAnimations.view2dFront
                targetDirection = Qt.vector3d(0, 0, 0)
                camera.animScheduler.onAnimationFinished(camera2dFront)
            }
        },

        CameraPoseAnimation {
            id: setCamera3dView

            duration: cameraAnimations.animationDuration
            targetPose: function() {
                if (camera.viewType === cameraAnimations.view2dTop) {
                    return {
                        position: camera2dTop.targetPosition(),
                        viewCenter: camera.viewCenter,
                        upVector: camera2dTop.targetUpVector()
                    }
                }
                if (camera.viewType === cameraAnimations.view2dFront) {
                    return {
                        position: camera2dFront.targetPosition(),
                        viewCenter: CameraMath.horizontal(camera.viewCenter),
                        upVector: camera2dFront.targetUpVector()
                    }
                }
                return { position: camera.position, viewCenter: camera.viewCenter, upVector: camera.upVector }
            }

            onStarted: {
                if (!scheduled) {
                    console.error("setCamera3dView not in scheduler")
                }
                camera.viewType = cameraAnimations.view3d
            }
            onStopped: camera.animScheduler.onAnimationFinished(setCamera3dView)
        },

        CameraPoseAnimation {
            id: resetCamera

            duration: cameraAnimations.animationDuration
            targetPose: function() {
                return { position: cameraPosDefault, viewCenter: cameraCenterDefault, upVector: cameraUpDefault }
            }

            onStarted: {
                if (!scheduled) {
                    console.error("resetCamera not in scheduler")
                }
            }
            onStopped: {
                camera.viewType = cameraAnimations.view2dTop
                camera.cameraResetFinished()
                camera.animScheduler.onAnimationFinished(resetCamera)
            }
        },

        CameraPoseAnimation {
            id: returnToLastFullView

            alwaysRunToEnd: true
            duration: cameraAnimations.animationDuration
            targetPose: function() {
                return {
                    position: camera.lastPositionFullView || cameraPosDefault,
                    viewCenter: camera.lastViewCenterFullView || cameraCenterDefault,
                    upVector: camera.lastUpVectorFullView || cameraUpDefault
                }
            }

            onStarted: {
                if (!scheduled) {
                    console.error("returnToLastFullView not in scheduler")
                }
                camera.restoreFullViewModes()
            }
            onStopped: camera.animScheduler.onAnimationFinished(returnToLastFullView)
        }
    ]
}
