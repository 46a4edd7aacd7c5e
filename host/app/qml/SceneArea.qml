import QtQuick 2.12
import com.torvik.view3d 1.0 as Torvik3d
import view3d 1.0 as View3d

/** The view as this application embeds it. */
View3d.Window3d {
    id: sceneArea

    /** Whether the host has tiles for a map. */
    readonly property bool hasTiles: typeof mapEndpoints !== "undefined" && !!mapEndpoints && mapEndpoints.available
    readonly property Item scene: scene3d || null

    /** Takes the camera to a pose; the view type is told when it is there. */
    function goToPose(position, center, up, viewType, animated) {
        const camera = scene.camera
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
                passOverDistance()
            }
        })
    }

    /** Where the application itself took the camera is not too far away, however large the project is. */
    function passOverDistance() {
        const warning = itemNamed(sceneArea, "cameraDistanceInfoPanel")
        if (warning)
            warning.visible = false
    }

    function itemNamed(root, name) {
        for (let i = 0; i < root.children.length; ++i) {
            const child = root.children[i]
            const found = child.objectName === name ? child : itemNamed(child, name)
            if (found)
                return found
        }
        return null
    }

    function goToView(viewType) {
        if (viewType === Torvik3d.CameraController.View2dTop) {
            scene.switchTo2dTop()
        } else if (viewType === Torvik3d.CameraController.View2dFront) {
            scene.switchTo2dFront()
        } else if (viewType === Torvik3d.CameraController.View3d) {
            scene.switchTo3d()
        }
    }

    objectName: "window3d"
    // The window is not shown before its scene stands.
    sceneLoader.asynchronous: false
    mapWanted: hasTiles
    controlsVisible: false
    toggleSplitViewCallback: function() {
        beforeSplitViewModeChanged()
        splitViewMode = !splitViewMode
    }

    ParallelAnimation {
        id: poseAnimation

        property var scheduled
        property int endViewType
        property vector3d endPosition
        property vector3d endCenter
        property vector3d endUp

        onStopped: {
            sceneArea.scene.camera.viewType = endViewType
            sceneArea.scene.camera.animScheduler.onAnimationFinished(poseAnimation)
            sceneArea.passOverDistance()
        }

        Vector3dAnimation {
            target: sceneArea.scene ? sceneArea.scene.camera : null
            property: "position"
            to: poseAnimation.endPosition
            duration: 600
            easing.type: Easing.InOutQuad
        }
        Vector3dAnimation {
            target: sceneArea.scene ? sceneArea.scene.camera : null
            property: "viewCenter"
            to: poseAnimation.endCenter
            duration: 600
            easing.type: Easing.InOutQuad
        }
        Vector3dAnimation {
            target: sceneArea.scene ? sceneArea.scene.camera : null
            property: "upVector"
            to: poseAnimation.endUp
            duration: 600
            easing.type: Easing.InOutQuad
        }
    }
}
