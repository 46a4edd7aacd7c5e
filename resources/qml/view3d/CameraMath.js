.pragma library

// Poses and vectors of the camera, from values alone. Lengths in metres, y up, north is +z, angles in degrees.

function radians(degrees) {
    return degrees * Math.PI / 180
}

// A value of its own: a vector that is read from a property goes on following that property.
function copy(vector) {
    return Qt.vector3d(vector.x, vector.y, vector.z)
}

function horizontal(vector) {
    return Qt.vector3d(vector.x, 0, vector.z)
}

// Turns a distance that is meant for a lens of 20 degrees into one for this lens.
function viewVectorLenToFovScale(fieldOfView) {
    return Math.tan(radians(fieldOfView) / 2) / Math.tan(radians(10))
}

// Degrees below the horizon; 90 for a look straight down.
function tilt(viewVector) {
    var flat = Math.sqrt(viewVector.x * viewVector.x + viewVector.z * viewVector.z)
    return -Math.atan(viewVector.y / flat) * 180 / Math.PI
}

// Matrix by which a row vector is multiplied to turn about the axis, clockwise as seen against the axis.
function turnMatrix(axis, degrees) {
    var u = axis.normalized()
    var c = Math.cos(radians(degrees))
    var s = Math.sin(radians(degrees))
    var k = 1 - c
    return Qt.matrix4x4(
        u.x * u.x * k + c, u.x * u.y * k - u.z * s, u.x * u.z * k + u.y * s, 0,
        u.y * u.x * k + u.z * s, u.y * u.y * k + c, u.y * u.z * k - u.x * s, 0,
        u.z * u.x * k - u.y * s, u.z * u.y * k + u.x * s, u.z * u.z * k + c, 0,
        0, 0, 0, 1)
}

// Zero vectors and zero distances count as missing.
function isMissing(vector) {
    return !vector || vector.length() === 0
}

// How many times nearer the camera comes: at least 1 for a positive target, at most 1 for a negative one.
function distanceRatio(viewVectorLength, targetDistance, lenToFovScale) {
    if (!targetDistance) {
        return 1
    }
    var ratio = Math.abs(viewVectorLength / (targetDistance / lenToFovScale))
    return targetDistance > 0 ? Math.max(ratio, 1) : Math.min(ratio, 1)
}

// The vertical vector across a view direction that is neither level nor straight down.
function upAcross(direction) {
    var x = direction.x
    var z = direction.z
    return Qt.vector3d(x, (-x * x - z * z) / direction.y, z)
}

// Up vector at the end of a move. `front` and `top` say which of the 2D views the camera is in.
function safeUpVector(direction, front, top, viewVector, upVector) {
    if (front) {
        return Qt.vector3d(0, 1, 0)
    }
    if (top) {
        return Qt.vector3d(0, 0, 1)
    }
    var up = upAcross(direction)
    return up.length() < 0.00001 ? horizontal(viewVector.plus(upVector)) : up
}

// The zoom, a factor of the distance, as far as the distance stays within its limits.
function zoomWithin(zoom, startDist, minDist, maxDist) {
    return Math.max(minDist, Math.min(maxDist, startDist * zoom)) / startDist
}

// Direction from the camera through a pixel.
function screenRay(viewVector, upVector, fieldOfView, pixel, width, height) {
    var forward = viewVector.normalized()
    var right = forward.crossProduct(upVector).normalized()
    var up = right.crossProduct(forward)
    var t = Math.tan(radians(fieldOfView) / 2)
    return forward.plus(right.times((2 * pixel.x / width - 1) * t * width / height))
                  .plus(up.times((1 - 2 * pixel.y / height) * t)).normalized()
}
