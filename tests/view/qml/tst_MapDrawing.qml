import QtLocation 5.12
import QtPositioning 5.12
import QtQuick 2.12
import QtTest 1.12

import "qrc:/qml/view3d"

/** Simple buildings drawn on a map that has no tiles. */
Item {
    id: owner

    /** Made when the window stands: a map asks for it at once. */
    property var map
    property var removed: []

    function removeBuilding(building) {
        removed.push(building)
        drawing.remove(building)
    }

    width: 400
    height: 300

    Component {
        id: mapComponent

        Map {
            anchors.fill: parent
            plugin: Plugin { name: "itemsoverlay" }
            center: QtPositioning.coordinate(47.68, 10.33)
            zoomLevel: 17
            gesture.enabled: false
        }
    }

    MapDrawing {
        id: drawing

        map: owner.map
    }

    MapPoint {
        id: lonePoint
    }

    TestCase {
        name: "MapDrawing"
        when: windowShown

        readonly property var corners: [Qt.point(100, 100), Qt.point(300, 100), Qt.point(300, 200), Qt.point(100, 200)]

        function build(count) {
            drawing.start()
            for (let i = 0; i < count; i++) {
                drawing.addVertex(corners[i])
            }
            return drawing.underConstruction
        }

        function labels() {
            const found = []
            for (let i = 0; i < owner.children.length; i++) {
                if (owner.children[i].determineText !== undefined) {
                    found.push(owner.children[i])
                }
            }
            return found
        }

        function shownLabels() {
            return labels().filter(function(label) { return label.visible })
        }

        /** What the label in the middle between two points says. */
        function lengthBetween(building, i, j) {
            const p = map.fromCoordinate(building.mapPoints[i].shape.coordinate, false)
            const q = map.fromCoordinate(building.mapPoints[j].shape.coordinate, false)
            const there = shownLabels().filter(function(label) {
                return Math.abs(label.x + label.width / 2 - (p.x + q.x) / 2) < 1
                       && Math.abs(label.y + label.height / 2 - (p.y + q.y) / 2) < 1
            })
            return there.length === 1 ? there[0].value : NaN
        }

        function onMap(item) {
            for (let i = 0; i < map.mapItems.length; i++) {
                if (map.mapItems[i] === item) {
                    return true
                }
            }
            return false
        }

        /** Items of the map get their size when they are drawn. */
        function waitUntilDrawn(item) {
            tryVerify(function() { return item.width > 0 && item.height > 0 })
        }

        function initTestCase() {
            owner.map = mapComponent.createObject(owner)
        }

        function init() {
            tryVerify(function() { return map.mapReady })
        }

        function cleanup() {
            drawing.finish()
            drawing.removeAll()
            removed = []
            // Buildings are destroyed when the events have had their turn.
            tryVerify(function() { return labels().length === 0 && map.mapItems.length === 0 })
        }

        function test_aLineStandsInUntilThereAreThreePoints_data() {
            return [{tag: "one", count: 1, polygon: false}, {tag: "two", count: 2, polygon: false},
                    {tag: "three", count: 3, polygon: true}, {tag: "four", count: 4, polygon: true}]
        }
        function test_aLineStandsInUntilThereAreThreePoints(data) {
            const building = build(data.count)

            compare(building.mapPoints.length, data.count)
            compare(building.shape.visible, data.polygon)
            compare(building.helperShape.visible, !data.polygon)
            compare(building.shape.path.length, data.count)
            compare(building.helperShape.path.length, data.count)
            verify(onMap(building.shape) && onMap(building.helperShape))
            building.mapPoints.forEach(function(point, index) {
                verify(onMap(point.shape))
                const pixel = map.fromCoordinate(point.shape.coordinate, false)
                fuzzyCompare(pixel.x, corners[index].x, 0.5)
                fuzzyCompare(pixel.y, corners[index].y, 0.5)
            })
        }

        function test_aBuildingLooksAsItShould() {
            const building = build(3)

            compare(building.shape.border.width, 2)
            verify(Qt.colorEqual(building.shape.border.color, "grey"))
            verify(Qt.colorEqual(building.shape.color, "lightgrey"))
            compare(building.helperShape.line.width, 2)
            verify(Qt.colorEqual(building.helperShape.line.color, "grey"))
            const circle = building.mapPoints[0].shape
            compare(circle.anchorPoint, Qt.point(10, 10))
            compare(circle.sourceItem.radius, 10)
            compare(circle.sourceItem.border.width, 2)
            verify(Qt.colorEqual(circle.sourceItem.color, "white"))
        }

        function test_aFinishedBuildingIsKeptWithoutItsPoints() {
            const building = build(3)
            drawing.finish()

            compare(drawing.underConstruction, undefined)
            compare(drawing.buildings, [building])
            building.mapPoints.forEach(function(point) { verify(!point.shape.visible) })
            compare(shownLabels().length, 0)
            drawing.showAllVertices()
            building.mapPoints.forEach(function(point) { verify(point.shape.visible) })
            drawing.hideAllVertices()
            building.mapPoints.forEach(function(point) { verify(!point.shape.visible) })
        }

        function test_aBuildingWithoutPointsIsNotKept() {
            const building = build(0)
            verify(building.isVoid())
            verify(onMap(building.shape))

            drawing.finish()

            compare(drawing.buildings.length, 0)
            compare(map.mapItems.length, 0)
            drawing.finish()
            drawing.addVertex(corners[0])
            compare(drawing.buildings.length, 0)
        }

        function test_beginningAnotherFinishesTheOneBefore() {
            const first = build(3)
            const second = build(2)

            compare(drawing.buildings, [first])
            verify(second !== first)
            drawing.finish()
            compare(drawing.buildings, [first, second])
        }

        function test_twoPointsHaveOneLength() {
            const building = build(2)
            const a = building.mapPoints[0].shape.coordinate
            const b = building.mapPoints[1].shape.coordinate

            compare(shownLabels().length, 1)
            const label = shownLabels()[0]
            compare(label.value, a.distanceTo(b))
            fuzzyCompare(label.x + label.width / 2, 200, 1)
            fuzzyCompare(label.y + label.height / 2, 100, 1)
        }

        function test_aPointHasLengthsToBothNeighbours_data() {
            return [{tag: "first", index: 0, before: 2, after: 1}, {tag: "middle", index: 1, before: 0, after: 2},
                    {tag: "last", index: 2, before: 1, after: 0}]
        }
        function test_aPointHasLengthsToBothNeighbours(data) {
            const building = build(3)
            const place = function(index) { return building.mapPoints[index].shape.coordinate }
            building.hideLabels()
            building.showLabelsForPoint(-1)
            compare(shownLabels().length, 0)

            building.showLabelsForPoint(data.index)

            compare(shownLabels().length, 2)
            compare(lengthBetween(building, data.index, data.before), place(data.index).distanceTo(place(data.before)))
            compare(lengthBetween(building, data.index, data.after), place(data.index).distanceTo(place(data.after)))
        }

        function test_lengthsGoWhenTheMapZooms() {
            build(3)
            compare(shownLabels().length, 2)

            map.zoomLevel = 16.5

            compare(shownLabels().length, 0)
            map.zoomLevel = 17
        }

        function test_aMovedPointTakesItsCornerAlong() {
            const building = build(3)
            const there = map.toCoordinate(Qt.point(320, 80), false)

            building.mapPoints[1].shape.coordinate = there

            compare(building.shape.path.length, 3)
            fuzzyCompare(building.shape.path[1].latitude, there.latitude, 1e-9)
            fuzzyCompare(building.helperShape.path[1].longitude, there.longitude, 1e-9)
            compare(lengthBetween(building, 1, 0), there.distanceTo(building.mapPoints[0].shape.coordinate))
        }

        function test_aPointFollowsTheFinger() {
            const building = build(3)
            waitUntilDrawn(building.mapPoints[1].shape)
            mouseDrag(map, 300, 100, 40, -30, Qt.LeftButton, Qt.NoModifier, 50)

            const moved = map.fromCoordinate(building.shape.path[1], false)
            verify(moved.x > 310 && moved.y < 95, moved.x + ", " + moved.y)
        }

        function test_deletedPointsLeaveTheRest() {
            const building = build(3)
            const kept = [building.mapPoints[0].shape.coordinate, building.mapPoints[2].shape.coordinate]

            building.deletePoint(building.mapPoints[1])

            compare(building.mapPoints.length, 2)
            verify(!building.shape.visible)
            verify(building.helperShape.visible)
            compare(building.shape.path, kept)
            compare(building.helperShape.path, kept)
            compare(removed.length, 0)
            building.deletePoint(building.mapPoints[0])
            compare(removed.length, 0)
            building.deletePoint(building.mapPoints[0])
            compare(removed, [building])
            compare(drawing.underConstruction, undefined)
        }

        function test_aDoubleClickDeletesAPoint() {
            const building = build(4)

            waitUntilDrawn(building.mapPoints[1].shape)
            mouseDoubleClickSequence(map, 300, 100)

            compare(building.mapPoints.length, 3)
            fuzzyCompare(map.fromCoordinate(building.shape.path[1], false).y, 200, 0.5)
        }

        function test_aPointOfSomethingElseStays() {
            const told = []
            lonePoint.controlledObject = {movePoint: function(point) { told.push(point) }}
            map.addMapItem(lonePoint.shape)
            lonePoint.shape.coordinate = map.toCoordinate(corners[0], false)
            compare(told, [lonePoint])

            // An error would fail the test.
            lonePoint.mouseArea.doubleClicked(null)
            lonePoint.controlledObject = undefined
            lonePoint.shape.coordinate = map.toCoordinate(corners[1], false)
            lonePoint.mouseArea.doubleClicked(null)

            compare(told, [lonePoint])
            map.removeMapItem(lonePoint.shape)
        }

        function test_aClickRemovesABuildingWhileThatIsAsked() {
            const building = build(4)
            drawing.finish()
            waitUntilDrawn(building.shape)
            mouseClick(map, 200, 150)
            compare(drawing.buildings.length, 1)
            drawing.setRemovalEnabled(true)
            verify(building.removalEnabled)
            drawing.setRemovalEnabled(false)
            // Elsewhere each time, or two clicks would be a double one.
            mouseClick(map, 250, 170)
            compare(drawing.buildings.length, 1)
            drawing.setRemovalEnabled(true)
            mouseClick(map, 150, 130)

            compare(removed, [building])
            compare(drawing.buildings.length, 0)
            tryVerify(function() { return map.mapItems.length === 0 })
        }

        function test_allAreRemoved() {
            build(3)
            drawing.finish()
            build(4)
            drawing.finish()
            compare(map.mapItems.length, 4 + 3 + 4)

            drawing.removeAll()

            compare(drawing.buildings.length, 0)
            tryVerify(function() { return map.mapItems.length === 0 })
        }
    }
}
