import QtQuick 2.12
import com.torvik.view3d 1.0 as Torvik3d
import view3d 1.0 as View3d

import "."

/** The scene with the flags that it and its surroundings share. */
Item {
    id: window3d

    property alias scene: scene3d
    property real cameraFOV: 3
    property bool mode3d: true
    property int mode3dType: Torvik3d.CameraController.Translate
    property bool gridVisible: true
    property bool gridDisabled: false
    /** Farther away, in metres, the grid is not drawn. */
    readonly property real gridVisibilityLimit: 3500
    property bool gridIsFarAwayFromCamera: scene3d.camera.viewVectorLength > gridVisibilityLimit
    property bool screenshotPending: false
    property bool splitViewMode: false
    property bool mapVisible: true
    /** The street map under the scene, once it is loaded and if the host has tiles. */
    readonly property var map: mapLoader.item
    /** The scene is see-through over the map. */
    property real sceneTransparency: map && map.shown ? 0 : 1.0
    readonly property bool hasTiles: typeof mapEndpoints !== "undefined" && !!mapEndpoints && mapEndpoints.available
    /** Buttons that zoom by being dragged, at the right-hand edge. */
    property bool zoomButtons: false

    signal beforeSplitViewModeChanged()

    objectName: "window3d"

    /** Takes the camera to a pose; the view type is told when it is there. */
    function goToPose(position, center, up, viewType, animated) {
        const camera = scene3d.camera
        camera.scheduleDelayedAnimation(function() {
            if (animated) {
                poseAnimation.endViewType = viewType
                poseAnimation.endPosition = position
                poseAnimation.endCenter = center
                poseAnimation.endUp = up
                camera.animScheduler.scheduleAnimation(poseAnimation)
            } else {
                camera.viewType = viewType
                camera.setPose(position, center, up)
            }
        })
    }

    function goToView(viewType) {
        if (viewType === Torvik3d.CameraController.View2dTop) {
            scene3d.switchTo2dTop()
        } else if (viewType === Torvik3d.CameraController.View2dFront) {
            scene3d.switchTo2dFront()
        } else if (viewType === Torvik3d.CameraController.View3d) {
            scene3d.switchTo3d()
        }
    }

    // Loaded beside the scene, which does not wait for it.
    Loader {
        id: mapLoader

        anchors.fill: parent
        active: window3d.hasTiles
        asynchronous: true
        sourceComponent: View3d.MapBackground {}
    }

    View3d.Scene {
        id: scene3d

        objectName: "scene"
        anchors.fill: parent
        hoverEnabled: false
    }

    View3d.GridScaleInfo {
        objectName: "gridScaleInfo"
        parentScene: scene3d
        gridSeaLevel: scene3d.sceneRoot.gridSeaLevel
        pixelScale: pixelScaleOfScene
    }

    View3d.PinchControl {
        anchors.fill: scene3d
        scene: scene3d
    }

    Loader {
        active: window3d.zoomButtons
        anchors { right: parent.right; top: parent.top; margins: Style.gap }
        sourceComponent: View3d.DragZoom3dButton {
            objectName: "zoomInButton"
            zoomIn: true
            screenPointer: null
            iconActive: design.icons.button3DZoomPlusPipeViewscreen.active
            iconInactive: design.icons.button3DZoomPlusPipeViewscreen.enabled
        }
    }

    Loader {
        active: window3d.zoomButtons
        anchors { right: parent.right; bottom: parent.bottom; margins: Style.gap }
        sourceComponent: View3d.DragZoom3dButton {
            objectName: "zoomOutButton"
            zoomIn: false
            screenPointer: null
            iconActive: design.icons.button3DZoomMinusPipeViewscreen.active
            iconInactive: design.icons.button3DZoomMinusPipeViewscreen.enabled
        }
    }

    ParallelAnimation {
        id: poseAnimation

        property var scheduled
        property int endViewType
        property vector3d endPosition
        property vector3d endCenter
        property vector3d endUp

        onStopped: {
            scene3d.camera.viewType = endViewType
            scene3d.camera.animScheduler.onAnimationFinished(poseAnimation)
        }

        Vector3dAnimation {
            target: scene3d.camera
            property: "position"
            to: poseAnimation.endPosition
            duration: 600
            easing.type: Easing.InOutQuad
        }
        Vector3dAnimation {
            target: scene3d.camera
            property: "viewCenter"
            to: poseAnimation.endCenter
            duration: 600
            easing.type: Easing.InOutQuad
        }
        Vector3dAnimation {
            target: scene3d.camera
            property: "upVector"
            to: poseAnimation.endUp
            duration: 600
            easing.type: Easing.InOutQuad
        }
    }
}
