import QtQuick 2.12
import com.torvik.view3d 1.0 as Torvik3d

import "CameraMath.js" as CameraMath

/** Zooms while it is dragged across the screen, the further the more, towards the selected object; dragging it back
 *  undoes it. Stands in a corner of the scene, that for zooming in at the top and the other at the bottom. Expects a
 *  scene3d around it. */
Item {
    id: button

    /** The point that stays where it is on the screen, and where camera and view centre stood from it at the start. */
    property vector3d zoomCenter
    property vector3d startVecToZoomCenter
    property vector3d startViewCenterToZoomCenter
    property real startDist
    property bool zoomIn: true
    /** The host's pointer in the scene, with `visible` and `position()`; may be missing. */
    property var screenPointer
    property var iconActive
    property var iconInactive
    property real zoomPerPixel: 0.02
    /** How far the button has been dragged, in pixels. */
    property real distFromOrigin: 0
    property alias state: image.state
    property alias drag: mouseArea.drag

    width: 64
    height: 64

    function isOnScreen(point) {
        const pixel = Utils3D.pointWorldToScreen(scene3d.camera, point, scene3d.width, scene3d.height)
        return pixel.x >= 0 && pixel.x <= scene3d.width && pixel.y >= 0 && pixel.y <= scene3d.height
    }

    function findZoomCenter() {
        const selected = scene3d.sceneRoot.selectedRenderable
        if (selected && isOnScreen(selected.position)) {
            return selected.position
        }
        if (screenPointer && screenPointer.visible && isOnScreen(screenPointer.position())) {
            return screenPointer.position()
        }
        return scene3d.camera.viewCenter
    }

    function startZoom() {
        const camera = scene3d.camera
        zoomCenter = CameraMath.copy(findZoomCenter())
        startDist = camera.viewVectorLength
        startVecToZoomCenter = zoomCenter.minus(camera.position)
        startViewCenterToZoomCenter = zoomCenter.minus(camera.viewCenter)
    }

    function followDrag() {
        distFromOrigin = Math.sqrt(handle.x * handle.x + handle.y * handle.y)
    }

    function applyZoom() {
        const camera = scene3d.camera
        const wanted = Math.pow(zoomIn ? 1 - zoomPerPixel : 1 + zoomPerPixel, distFromOrigin)
        const zoom = CameraMath.zoomWithin(wanted, startDist, camera.minDist, camera.maxDist)
        const position = zoomCenter.minus(startVecToZoomCenter.times(zoom))
        let viewCenter = zoomCenter.minus(startViewCenterToZoomCenter.times(zoom))
        if (camera.viewType !== Torvik3d.CameraController.View2dFront) {
            const ground = Utils3D.rayPlaneIntersec(position, viewCenter.minus(position))
            if (ground !== undefined) {
                viewCenter = ground
            }
        }
        camera.viewCenter = viewCenter
        camera.position = position
    }

    onDistFromOriginChanged: {
        if (mouseArea.drag.active) {
            applyZoom()
        }
    }

    Image {
        id: image

        anchors.fill: parent
        fillMode: Image.PreserveAspectFit
        state: mouseArea.drag.active ? "active" : "normal"
        states: [
            State {
                name: "active"
                PropertyChanges { target: image; source: button.iconActive ? button.iconActive : "" }
            },
            State {
                name: "normal"
                PropertyChanges { target: image; source: button.iconInactive ? button.iconInactive : "" }
            }
        ]
    }

    Rectangle {
        id: handle

        parent: button.parent
        width: button.width
        height: button.height
        visible: false
        onXChanged: button.followDrag()
        onYChanged: button.followDrag()
    }

    MouseArea {
        id: mouseArea

        anchors.fill: parent
        drag {
            target: handle
            axis: Drag.XAndYAxis
            // Every pixel of the finger counts.
            threshold: 0
            smoothed: false
            minimumX: scene3d ? handle.width - scene3d.width : 0
            maximumX: 0
            minimumY: button.zoomIn || !scene3d ? 0 : handle.height - scene3d.height
            maximumY: button.zoomIn && scene3d ? scene3d.height - handle.height : 0
            onActiveChanged: {
                if (drag.active) {
                    button.startZoom()
                    button.applyZoom()
                } else {
                    handle.x = 0
                    handle.y = 0
                }
            }
        }
    }
}
