import QtQuick 2.12

/** The segments of TwoSectionInterface, drawn over the scene. */
Canvas {
    id: canvas

    property Item overlay
    property Item first
    property Item second
    readonly property real crossSize: 9

    function toScreen(point) {
        return Utils3D.pointWorldToScreen(overlay.camera, point, overlay.width, overlay.height)
    }

    function line(context, from, to) {
        context.beginPath()
        context.moveTo(from.x, from.y)
        context.lineTo(to.x, to.y)
        context.stroke()
    }

    function cross(context, at) {
        line(context, Qt.point(at.x - crossSize, at.y), Qt.point(at.x + crossSize, at.y))
        line(context, Qt.point(at.x, at.y - crossSize), Qt.point(at.x, at.y + crossSize))
    }

    onPaint: {
        const context = getContext("2d")
        context.clearRect(0, 0, width, height)
        if (!overlay.visible || !overlay.camera)
            return
        context.strokeStyle = Qt.rgba(0.2, 1, 0, 1)
        context.lineWidth = 2
        const points = overlay.resultPoints
        if (!overlay.ifDefiningFirstSegment() && points[0] && points[1]) {
            const from = toScreen(points[0])
            const to = toScreen(points[1])
            cross(context, from)
            cross(context, to)
            line(context, from, to)
        }
        if (first.visible && second.visible)
            line(context, toScreen(first.savedWorldPosition), toScreen(second.savedWorldPosition))
    }
}
