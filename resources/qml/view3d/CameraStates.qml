import QtQuick 2.12

import "CameraMath.js" as CameraMath

/** A stack of the camera's poses. */
QtObject {
    id: cameraStates

    property var stack: []

    function push() {
        stack.push({
            position: CameraMath.copy(camera.position),
            center: CameraMath.copy(camera.viewCenter),
            up: CameraMath.copy(camera.upVector),
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
