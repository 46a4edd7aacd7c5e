import QtQuick 2.12

import "CompassMath.js" as CompassMath

/** Points north; a tap turns the view back to north, holding it shows the diagnoses. */
Item {
    id: compassButton

    /** The picture that turns. */
    property alias icon: compass_icon
    /** The view's camera, once there is one. */
    property var camera

    signal held()

    width: 64
    height: 64

    Rectangle {
        anchors.fill: parent
        color: design.misc.flyingObject.backgroungColor
        opacity: design.misc.flyingObject.backgroungOpacity
    }

    Image {
        id: compass_icon

        function calculateCompass() {
            const turn = CompassMath.rotation(compassButton.camera.upVector, compassButton.camera.viewVector)
            if (turn === undefined) {
                console.error("# Camera has wrong state!")
                return
            }
            rotation = turn
        }

        objectName: "compass_icon"
        anchors.fill: parent
        source: design.icons.compass.active
    }

    MouseArea {
        anchors.fill: parent
        pressAndHoldInterval: 4000
        onClicked: compassButton.camera.setDefaultCamera3dView()
        onPressAndHold: compassButton.held()
    }

    Connections {
        target: compassButton.camera || null
        enabled: !!compassButton.camera

        function onCameraProjectionChanged() {
            compass_icon.calculateCompass()
        }
    }
}
