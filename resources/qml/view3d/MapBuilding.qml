import QtQuick 2.12
import QtLocation 5.12

import "MapMath.js" as MapMath

/** A simple building that is drawn on the map, which is its parent. */
Item {
    id: root

    property alias shape: polygon
    /** Stands in for the polygon until there are three points: one of two points doesn't stay on the map's plane. */
    property alias helperShape: helperLine
    property alias removalEnabled: removeArea.enabled
    property var mapPoints: []

    Component.onCompleted: {
        parent.addMapItem(polygon)
        parent.addMapItem(helperLine)
    }
    Component.onDestruction: {
        mapPoints.forEach(function(point) {
            if (parent) {
                parent.removeMapItem(point.shape)
            }
            point.destroy()
        })
    }

    Connections {
        target: root.parent

        function onZoomLevelChanged() {
            hideLabels()
        }
    }

    function addPoint(point) {
        const coordinate = parent.toCoordinate(point, false)
        showShape(mapPoints.length > 1)
        polygon.addCoordinate(coordinate)
        helperLine.addCoordinate(coordinate)
        const mapPoint = pointComponent.createObject(root)
        mapPoint.shape.coordinate = coordinate
        mapPoint.controlledObject = root
        parent.addMapItem(mapPoint.shape)
        mapPoints.push(mapPoint)
        showLabelsForPoint(mapPoints.length - 1)
    }

    function showShape(asPolygon) {
        polygon.visible = asPolygon
        helperLine.visible = !asPolygon
    }

    function showPoints() {
        mapPoints.forEach(function(point) { point.shape.visible = true })
    }

    function hidePoints() {
        mapPoints.forEach(function(point) { point.shape.visible = false })
        hideLabels()
    }

    function movePoint(mapPoint) {
        const index = mapPoints.indexOf(mapPoint)
        if (index < 0) {
            return
        }
        const path = polygon.path
        path[index] = mapPoint.shape.coordinate
        polygon.path = path
        helperLine.path = path
        showLabelsForPoint(index)
    }

    function deletePoint(mapPoint) {
        const index = mapPoints.indexOf(mapPoint)
        if (index < 0) {
            return
        }
        const coordinate = mapPoint.shape.coordinate
        mapPoints.splice(index, 1)
        parent.removeMapItem(mapPoint.shape)
        showShape(mapPoints.length >= 3)
        polygon.removeCoordinate(coordinate)
        helperLine.removeCoordinate(coordinate)
        mapPoint.destroy()
        if (mapPoints.length === 0) {
            parent.parent.removeBuilding(root)
        } else {
            showLabelsForPoint(index === 0 ? 0 : index - 1)
        }
    }

    function isVoid() {
        return mapPoints.length === 0
    }

    function showLabelsForPoint(index) {
        if (index === -1 || mapPoints.length < 2) {
            return
        }
        const around = MapMath.neighbours(index, mapPoints.length)
        showLabel(labelLength1, mapPoints[index], mapPoints[around[0]])
        if (mapPoints.length === 2) {
            labelLength2.visible = false
        } else {
            showLabel(labelLength2, mapPoints[index], mapPoints[around[1]])
        }
    }

    function showLabel(label, a, b) {
        const from = a.shape.coordinate
        const to = b.shape.coordinate
        const p = parent.fromCoordinate(from, false)
        const q = parent.fromCoordinate(to, false)
        // Upright beside the map, which lies tilted.
        const middle = parent.mapToItem(label.parent, (p.x + q.x) / 2, (p.y + q.y) / 2)
        label.value = from.distanceTo(to)
        label.x = middle.x - label.width / 2
        label.y = middle.y - label.height / 2
        label.visible = true
    }

    function hideLabels() {
        labelLength1.visible = false
        labelLength2.visible = false
    }

    Component {
        id: pointComponent

        MapPoint {}
    }

    MapPolygon {
        id: polygon

        visible: false
        color: "lightgrey"
        border.width: 2
        border.color: "grey"

        MouseArea {
            id: removeArea

            anchors.fill: parent
            enabled: false
            onClicked: root.parent.parent.removeBuilding(root)
        }
    }

    MapPolyline {
        id: helperLine

        line.width: 2
        line.color: "grey"
    }

    LengthLabel {
        id: labelLength1

        parent: root.parent ? root.parent.parent : root
        visible: false
    }

    LengthLabel {
        id: labelLength2

        parent: root.parent ? root.parent.parent : root
        visible: false
    }
}
