import QtQuick 2.12
import QtTest 1.12

import "qrc:/qml/view3d/CameraMath.js" as CameraMath

TestCase {
    name: "CameraMath"

    function fuzzyVector(actual, expected) {
        verify(actual.minus(expected).length() < 1e-4, actual + " is not " + expected)
    }

    function test_theLensScaleTurnsTwentyDegreesIntoThree() {
        fuzzyCompare(CameraMath.viewVectorLenToFovScale(20), 1, 1e-12)
        // tan(1.5 degrees) / tan(10 degrees), by hand.
        fuzzyCompare(CameraMath.viewVectorLenToFovScale(3), 0.1485077, 1e-6)
    }

    function test_tiltIsMeasuredBelowTheHorizon_data() {
        return [
            { tag: "level", view: Qt.vector3d(0, 0, 5), tilt: 0 },
            { tag: "half down", view: Qt.vector3d(3, -5, 4), tilt: 45 },
            { tag: "straight down", view: Qt.vector3d(0, -5, 0), tilt: 90 },
            { tag: "up", view: Qt.vector3d(0, 5, 5), tilt: -45 }
        ]
    }

    function test_tiltIsMeasuredBelowTheHorizon(data) {
        fuzzyCompare(CameraMath.tilt(data.view), data.tilt, 1e-5)
    }

    function test_turningARowVectorGoesFromDownToNorth() {
        const matrix = CameraMath.turnMatrix(Qt.vector3d(2, 0, 0), 90)

        fuzzyVector(Qt.vector3d(0, -1, 0).times(matrix), Qt.vector3d(0, 0, 1))
        fuzzyVector(Qt.vector3d(0, 0, 1).times(matrix), Qt.vector3d(0, 1, 0))
    }

    function test_turningKeepsTheAxisAndTheLength() {
        const axis = Qt.vector3d(1, 2, -3)
        const matrix = CameraMath.turnMatrix(axis, 33)

        fuzzyVector(axis.times(matrix), axis)
        fuzzyCompare(Qt.vector3d(4, -5, 6).times(matrix).length(), Qt.vector3d(4, -5, 6).length(), 1e-4)
    }

    function test_aTargetDistanceActsInOneDirectionOnly_data() {
        return [
            { tag: "nearer", now: 400, target: 100, ratio: 4 },
            { tag: "positive does not move away", now: 50, target: 100, ratio: 1 },
            { tag: "away", now: 50, target: -100, ratio: 0.5 },
            { tag: "negative does not come nearer", now: 400, target: -100, ratio: 1 },
            { tag: "missing", now: 400, target: undefined, ratio: 1 },
            { tag: "zero", now: 400, target: 0, ratio: 1 }
        ]
    }

    function test_aTargetDistanceActsInOneDirectionOnly(data) {
        fuzzyCompare(CameraMath.distanceRatio(data.now, data.target, 1), data.ratio, 1e-9)
    }

    function test_theUpVectorStandsAcrossTheView() {
        const direction = Qt.vector3d(3, -5, 4)
        const up = CameraMath.upAcross(direction)

        fuzzyCompare(up.dotProduct(direction), 0, 1e-4)
        verify(up.y > 0)
    }

    function test_straightDownTheUpVectorIsWhatWasHorizontal() {
        const up = CameraMath.safeUpVector(Qt.vector3d(0, -5, 0), false, false, Qt.vector3d(0, -5, 0),
                                           Qt.vector3d(0, 0, 1))

        fuzzyVector(up, Qt.vector3d(0, 0, 1))
    }
}
