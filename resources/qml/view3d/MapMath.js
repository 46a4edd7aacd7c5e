.pragma library

/** Arithmetic of the map under the scene. Angles are degrees, lengths metres. */

var equator = 40075016.686

function degrees(radians) {
    return radians * 180 / Math.PI
}

/** Heading of the screen's upper edge, clockwise from the scene's north (+z), for a camera that looks along
 *  `viewVector` with `upVector` upward. -90 to 270. */
function bearing(viewVector, upVector) {
    const back = viewVector.normalized().times(-1)
    return 90 + degrees(Math.atan2(back.z - upVector.z, back.x - upVector.x))
}

/** Angle between the line of sight and the vertical. */
function tilt(viewVector) {
    const back = viewVector.normalized().times(-1)
    return 90 - degrees(Math.atan2(back.y, Math.sqrt(back.z * back.z + back.x * back.x)))
}

/** Zoom level at which tiles of 256 pixels have this size on the ground. */
function zoomLevel(latitude, metersPerPixel) {
    return -8 + Math.log(equator * Math.cos(latitude * Math.PI / 180) / metersPerPixel) / Math.LN2
}

/** The level at which the map draws: QtLocation takes a whole one for those that are nearly whole. */
function drawnLevel(level) {
    const whole = Math.round(level)
    return Math.abs(level - whole) < 0.01 ? whole : level
}

/** Whether a coordinate is one on earth: a search or a device may give NaN, or nothing. */
function isPlace(coordinate) {
    return !!coordinate && Math.abs(coordinate.latitude) <= 90 && Math.abs(coordinate.longitude) <= 180
}

/** Clockwise from north. */
function azimuth(metersNorth, metersEast) {
    return 90 - degrees(Math.atan2(metersNorth, metersEast))
}

/** The indexes of the points before and after one of `count` points in a ring. */
function neighbours(index, count) {
    return [(index + count - 1) % count, (index + 1) % count]
}
