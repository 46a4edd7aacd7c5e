import QtQuick 2.12

/** Moves the camera to a pose that is computed when the move starts. */
ParallelAnimation {
    id: poseAnimation

    property var scheduled
    property int duration: 600
    /** Gives { position, viewCenter, upVector }. */
    property var targetPose

    function start() {
        const pose = targetPose()
        positionAnimation.to = pose.position
        centerAnimation.to = pose.viewCenter
        upAnimation.to = pose.upVector
        running = true
    }

    Vector3dAnimation {
        id: positionAnimation

        target: camera
        property: "position"
        duration: poseAnimation.duration
    }
    Vector3dAnimation {
        id: centerAnimation

        target: camera
        property: "viewCenter"
        duration: poseAnimation.duration
    }
    Vector3dAnimation {
        id: upAnimation

        target: camera
        property: "upVector"
        duration: poseAnimation.duration
    }
}
