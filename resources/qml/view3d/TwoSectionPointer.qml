import QtQuick 2.12
import ostel.controls 1.0

/** A pointer that stays on its point of the ground while the view moves. */
ScreenPointer {
    id: pointer

    /** The TwoSectionInterface. */
    property Item overlay
    property vector3d savedWorldPosition: Qt.vector3d(0, 0, 0)
    /** Places of its point among the result points, for the first and the second segment. */
    property int indexOfFirstSegment
    property int indexOfSecondSegment

    signal moved()

    function groundAt(x, y) {
        return Utils3D.pointScreenToWorldGround(x, y, overlay.camera, overlay.width, overlay.height)
    }

    function saveWorldPosition() {
        if (overlay.camera)
            savedWorldPosition = groundAt(center.x, center.y)
    }

    /** Whether the ground is seen there. Above the horizon it is met behind the camera, if at all. */
    function isOnGround(x, y) {
        if (!overlay.camera)
            return false
        const point = groundAt(x, y)
        return point.y !== -1 && point.minus(overlay.camera.position).dotProduct(overlay.camera.viewVector) > 0
    }

    function restoreSavedWorldPosition() {
        if (!overlay.camera)
            return
        const at = Utils3D.pointWorldToScreen(overlay.camera, savedWorldPosition, overlay.width, overlay.height)
        moveTo(at.x, at.y)
        moved()
    }

    function standAt(point) {
        savedWorldPosition = point
        restoreSavedWorldPosition()
    }

    function updateControlledResultPoint() {
        if (!visible)
            return
        const points = overlay.resultPoints.slice()
        points[overlay.ifDefiningFirstSegment() ? indexOfFirstSegment : indexOfSecondSegment]
                = Qt.vector3d(savedWorldPosition.x, savedWorldPosition.y, savedWorldPosition.z)
        overlay.resultPoints = points
    }

    onDragFinished: {
        if (!isOnGround(center.x, center.y)) {
            restoreSavedWorldPosition()
            return
        }
        saveWorldPosition()
        if (!overlay.ifNextStepButtonShouldBeEnabled())
            updateControlledResultPoint()
        moved()
    }
}
