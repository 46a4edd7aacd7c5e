import QtQuick 2.12

/** A stack of the camera's poses. */
QtObject {
    id: cameraStates

    property var stack: []

    function push() {
        stack.push({
            position: Qt.vector3d(camera.position.x, camera.position.y, camera.position.z),
            center: Qt.vector3d(camera.viewCenter.x, camera.viewCenter.y, camera.viewCenter.z),
            up: Qt.vector3d(camera.upVector.x, camera.upVector.y, camera.upVector.z),
            viewType: camera.viewType
        })
    }

    /** The latest pose, or undefined. */
    function pop() {
        return stack.pop()
    }

    function popAndRestore() {
        const state = pop()
        if (state === undefined) {
            return
        }
        camera.setPose(state.position, state.center, state.up)
        camera.viewType = state.viewType
    }
}
