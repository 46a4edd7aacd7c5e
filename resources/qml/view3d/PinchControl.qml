import QtQuick 2.12
import Qt3D.Core 2.12
import com.torvik.view3d 1.0 as Torvik3d

import "CameraMath.js" as CameraMath

/** Two fingers on the scene: what lies under them stays under them while they spread, turn and move; from the front
 *  nothing turns. Lies over the Scene and leaves one finger to it. */
Item {
    id: pinchControl

    /** The Scene. */
    property Item scene: null

    /** At the start: the scene point between the fingers, the way from camera and view centre to it, and the rest. */
    property vector3d startCenter
    property vector3d startVecToCenter
    property vector3d startViewCenterToCenter
    property vector3d startUp
    property real startDist

    readonly property bool front: !!scene && scene.camera.viewType === Torvik3d.CameraController.View2dFront

    /** Of the plane on which the fingers hold the scene. */
    function planeNormal() {
        return front ? scene.camera.viewVector : Qt.vector3d(0, 1, 0)
    }

    /** Where the ray through a pixel meets the plane through a point; undefined if it does not. */
    function pointUnder(pixel, pointOnPlane) {
        const camera = scene.camera
        const ray = CameraMath.screenRay(camera.viewVector, camera.upVector, camera.fieldOfView, pixel, scene.width,
                                         scene.height)
        return Utils3D.rayPlaneIntersec(camera.position, ray, pointOnPlane, planeNormal())
    }

    function begin() {
        // Their releases will not come: the fingers belong to the pinch.
        scene.cameraController.abandonGesture()
        scene.sceneRoot.abandonTouch()
        const camera = scene.camera
        const under = pointUnder(pinch.centroid.position, front ? camera.viewCenter : Qt.vector3d(0, 0, 0))
        startCenter = CameraMath.copy(under === undefined ? camera.viewCenter : under)
        startVecToCenter = startCenter.minus(camera.position)
        startViewCenterToCenter = startCenter.minus(camera.viewCenter)
        startUp = CameraMath.copy(camera.upVector)
        startDist = camera.viewVectorLength
    }

    function follow() {
        const camera = scene.camera
        if (camera.animationsRunning || pinch.activeScale <= 0) {
            return
        }
        const zoom = CameraMath.zoomWithin(1 / pinch.activeScale, startDist, camera.minDist, camera.maxDist)
        const turn = CameraMath.turnMatrix(Qt.vector3d(0, 1, 0), front ? 0 : -pinch.rotation)
        const position = startCenter.minus(startVecToCenter.times(zoom).times(turn))
        const viewCenter = startCenter.minus(startViewCenterToCenter.times(zoom).times(turn))
        camera.setPose(position, viewCenter, startUp.times(turn))
        const under = pointUnder(pinch.centroid.position, startCenter)
        if (under !== undefined) {
            const shift = startCenter.minus(under)
            camera.setPose(position.plus(shift), viewCenter.plus(shift), camera.upVector)
        }
    }

    PinchHandler {
        id: pinch

        target: null
        onActiveChanged: {
            if (active) {
                pinchControl.begin()
            }
        }
        onUpdated: {
            if (active) {
                pinchControl.follow()
            }
        }
    }
}
