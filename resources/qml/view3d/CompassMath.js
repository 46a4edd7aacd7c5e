.pragma library

/** Degrees by which a picture that shows north upwards turns for a view, clockwise; undefined when the camera stands
 *  nowhere. The scene's north is +z and its east -x. */
function rotation(upVector, viewVector) {
    const x = upVector.x + viewVector.x
    const z = upVector.z + viewVector.z
    const length = Math.sqrt(x * x + z * z)
    if (!isFinite(length))
        return undefined
    // As of a vector without a direction.
    const cosine = length > 0 ? Math.max(-1, Math.min(1, z / length)) : 0
    return (x < 0 ? -1 : 1) * 180 * Math.acos(cosine) / Math.PI
}
