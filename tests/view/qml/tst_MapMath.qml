import QtQuick 2.12
import QtTest 1.12

import "qrc:/qml/view3d/MapMath.js" as MapMath

TestCase {
    name: "MapMath"

    /** A heading, without the turns in it. */
    function turn(degrees) {
        return ((degrees % 360) + 360) % 360
    }

    function test_bearingIsWhereTheUpperEdgePoints_data() {
        // North is +z and west is +x.
        return [{tag: "north", up: Qt.vector3d(0, 0, 1), heading: 0}, {tag: "west", up: Qt.vector3d(1, 0, 0), heading: 270},
                {tag: "south", up: Qt.vector3d(0, 0, -1), heading: 180},
                {tag: "east", up: Qt.vector3d(-1, 0, 0), heading: 90},
                {tag: "north west", up: Qt.vector3d(1, 0, 1), heading: 315}]
    }
    function test_bearingIsWhereTheUpperEdgePoints(data) {
        fuzzyCompare(turn(MapMath.bearing(Qt.vector3d(0, -70, 0), data.up) + 1), turn(data.heading + 1), 1e-4)
        // Tilted towards the same heading.
        const ahead = data.up.normalized()
        const view = ahead.minus(Qt.vector3d(0, 1, 0)).times(50)
        const up = ahead.plus(Qt.vector3d(0, 1, 0)).normalized()
        fuzzyCompare(turn(MapMath.bearing(view, up) + 1), turn(data.heading + 1), 1e-4)
    }

    function test_tiltIsTheAngleOffTheVertical_data() {
        return [{tag: "down", view: Qt.vector3d(0, -5, 0), tilt: 0}, {tag: "aslant", view: Qt.vector3d(3, -5, -4), tilt: 45},
                {tag: "level", view: Qt.vector3d(0, 0, 9), tilt: 90}, {tag: "up", view: Qt.vector3d(0, 2, 0), tilt: 180}]
    }
    function test_tiltIsTheAngleOffTheVertical(data) {
        fuzzyCompare(MapMath.tilt(data.view), data.tilt, 1e-4)
    }

    function test_zoomLevelOfTilesOf256Pixels() {
        fuzzyCompare(MapMath.zoomLevel(0, 156543.0339), 0, 1e-6)
        fuzzyCompare(MapMath.zoomLevel(0, 156543.0339 / 1024), 10, 1e-6)
        // A metre of the map is half as long there.
        fuzzyCompare(MapMath.zoomLevel(60, 156543.0339), -1, 1e-6)
    }

    function test_nearlyWholeLevelsAreDrawnAsWhole() {
        compare(MapMath.drawnLevel(17.009), 17)
        compare(MapMath.drawnLevel(16.991), 17)
        compare(MapMath.drawnLevel(17.011), 17.011)
        compare(MapMath.drawnLevel(16.5), 16.5)
    }

    function test_azimuthIsClockwiseFromNorth() {
        fuzzyCompare(MapMath.azimuth(1, 0), 0, 1e-9)
        fuzzyCompare(MapMath.azimuth(0, 1), 90, 1e-9)
        fuzzyCompare(MapMath.azimuth(-1, 0), 180, 1e-9)
        fuzzyCompare(turn(MapMath.azimuth(0, -1)), 270, 1e-9)
    }

    function test_neighboursGoRound() {
        compare(MapMath.neighbours(0, 3), [2, 1])
        compare(MapMath.neighbours(1, 3), [0, 2])
        compare(MapMath.neighbours(2, 3), [1, 0])
        compare(MapMath.neighbours(0, 2), [1, 1])
    }

    function test_whatIsAPlace_data() {
        return [{tag: "one", place: {latitude: 47, longitude: 10}, is: true},
                {tag: "pole", place: {latitude: -90, longitude: 180}, is: true},
                {tag: "nothing", place: undefined, is: false}, {tag: "null", place: null, is: false},
                {tag: "no numbers", place: {latitude: NaN, longitude: 10}, is: false},
                {tag: "half", place: {latitude: 47}, is: false},
                {tag: "beyond the pole", place: {latitude: 90.1, longitude: 0}, is: false},
                {tag: "beyond the date line", place: {latitude: 0, longitude: -180.1}, is: false}]
    }
    function test_whatIsAPlace(data) {
        compare(MapMath.isPlace(data.place), data.is)
    }
}
