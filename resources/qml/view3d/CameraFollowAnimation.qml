import QtQuick 2.12
import com.torvik.view3d 1.0 as Torvik3d

/** Lets a camera ride behind and above an object and turn with it. */
QtObject {
    id: cameraFollow

    /** An entity with `position`, `transform` and the signal editingFinished. */
    property var objectFollowed: null
    /** A Scene3DCamera. */
    property var targetCamera: null
    property bool active: false
    property int duration: 600
    property int viewMode: Torvik3d.CameraController.View3d

    readonly property real baseDistance: targetCamera ? 50 / targetCamera.viewVectorLenToFovScale : 0
    property vector3d baseOverhead3dViewVector: Qt.vector3d(0, 1, -1).times(baseDistance)
    property vector3d baseOverheadTopViewVector: Qt.vector3d(0, 1, 0).times(baseDistance)
    property vector3d baseUpVector3d: Qt.vector3d(0, 0.707106781, 0.707106781)
    property vector3d baseUpVector2d: Qt.vector3d(0, 0, 1)
    property bool stepWaits: false

    onActiveChanged: {
        stepWaits = false
        if (active) {
            follow()
        }
    }
    onViewModeChanged: {
        if (active) {
            follow()
        }
    }

    function follow() {
        targetCamera.viewType = Torvik3d.CameraController.ViewUndefined
        if (viewMode !== Torvik3d.CameraController.View2dFront) {
            schedule()
        }
    }

    function initAnim(animationDuration) {
        const top = viewMode === Torvik3d.CameraController.View2dTop
        const overheadVector = top ? baseOverheadTopViewVector : baseOverhead3dViewVector
        const baseVector = top ? baseUpVector2d : baseUpVector3d
        const matrix = objectFollowed.transform.matrix
        const targetCamPos = Utils3D.mapVector(matrix, overheadVector).plus(objectFollowed.position)
        const center = Utils3D.rayPlaneIntersec(targetCamPos, objectFollowed.position.minus(targetCamPos))
        positionAnimation.to = targetCamPos
        upAnimation.to = Utils3D.mapVector(matrix, baseVector)
        centerAnimation.to = center === undefined ? objectFollowed.position : center
        positionAnimation.duration = animationDuration
        upAnimation.duration = animationDuration
        centerAnimation.duration = animationDuration
    }

    /** A step that still waits goes to where the object is when its turn comes: a counter runs faster than the camera. */
    function schedule() {
        if (stepWaits) {
            return
        }
        stepWaits = true
        targetCamera.scheduleDelayedAnimation(function() {
            stepWaits = false
            if (active) {
                initAnim(duration)
                targetCamera.animScheduler.scheduleAnimation(anim)
            }
        })
    }

    property QtObject animation: ParallelAnimation {
        id: anim

        property var scheduled

        // An animation cannot be completed while it tells that it has started.
        function start() {
            running = true
            if (!cameraFollow.active) {
                complete()
            }
        }

        alwaysRunToEnd: true
        onStopped: cameraFollow.targetCamera.animScheduler.onAnimationFinished(anim)

        Vector3dAnimation {
            id: positionAnimation

            target: cameraFollow.targetCamera
            property: "position"
            easing.type: Easing.InOutQuad
            alwaysRunToEnd: true
        }
        Vector3dAnimation {
            id: centerAnimation

            target: cameraFollow.targetCamera
            property: "viewCenter"
            easing.type: Easing.InOutQuad
            alwaysRunToEnd: true
        }
        Vector3dAnimation {
            id: upAnimation

            target: cameraFollow.targetCamera
            property: "upVector"
            easing.type: Easing.InOutQuad
            alwaysRunToEnd: true
        }
    }

    property QtObject objectConnections: Connections {
        target: cameraFollow.objectFollowed

        function onEditingFinished() {
            cameraFollow.schedule()
        }
    }

    property QtObject windowConnections: Connections {
        target: window3d

        function onBeforeSplitViewModeChanged() {
            if (window3d.splitViewMode) {
                anim.complete()
            }
        }
    }
}
