import QtQuick 2.12

/** Tells how wide a square of the ground's grid is: a bar as long as a side of it, and the length. */
Item {
    id: gridScaleInfo

    /** The Scene. */
    property var parentScene
    /** Height of the grid in the project's system, in metres. */
    property real gridSeaLevel: 0
    property real scaleVisibilityLimit: 10 * window3d.gridVisibilityLimit
    property real baseMargin: 10
    property real edgesHeight: 10
    property real lineWidth: 2
    /** A square's pixels when its size is the distance: 165 in a scene that is 582 pixels high. */
    property real pixelScale: 165
    /** The pixelScale with which the bar is as long as a square of the ground in a scene of this height: a square is a
     *  tenth of its size, and the distance that of a lens of 20 degrees. */
    readonly property real pixelScaleOfScene: parentScene && parentScene.height > 0
                                              ? 0.1 * parentScene.height / (2 * Math.tan(10 * Math.PI / 180))
                                              : 165

    readonly property var sceneRoot: parentScene ? parentScene.sceneRoot : null
    readonly property var camera: parentScene ? parentScene.camera : null

    /** The grid keeps the project's unit when the user reads another one: its squares are then no whole numbers. */
    function numberText(number, oddFactor) {
        const whole = Math.round(number)
        return Math.abs(number - whole) < 0.01 ? whole.toString()
                                               : Number(number * oddFactor).toLocaleString(
                                                     Qt.locale(formatHelper.currentLocaleName), "f", 1)
    }

    function determineText() {
        if (!sceneRoot) {
            return ""
        }
        const size = Math.round(sceneRoot.gridSize * 1000) / 1000
        let factor
        let unit
        let oddFactor = 1
        if (formatHelper.distanceUnitString() === "ft") {
            const inches = size < 3.048
            factor = inches ? 10.0 / 1.27 : 10.0 / 30.48
            unit = inches ? "inch" : "ft"
            // The smallest square in feet counts for ten; a metric one has its own inches of 2.54 cm.
            oddFactor = inches ? 0.5 : 1
        } else {
            const centimetres = size < 10.0
            factor = centimetres ? 10.0 : 0.1
            unit = centimetres ? "cm" : "m"
        }
        return numberText(size * factor, oddFactor) + " " + unit
    }

    anchors { left: parent.left; bottom: parent.bottom; margins: baseMargin }
    width: Math.max(rulerBody.width, label.implicitWidth)
    height: label.implicitHeight + edgesHeight
    visible: !!camera && camera.viewVectorLength < scaleVisibilityLimit

    Text {
        id: label

        objectName: "gridScaleText"
        anchors { left: parent.left; leftMargin: gridScaleInfo.lineWidth * 2; bottom: rulerBody.top }
        color: design.misc.flyingObject.textColor
        font.pixelSize: design.misc.flyingObject.fontSize
        font.family: font_Regular.name
        // A function can't tell that it would give something else; hosts whose unit changes have a property for that.
        text: formatHelper.distanceUnit, gridScaleInfo.determineText()
    }

    Rectangle {
        id: rulerBody

        objectName: "rulerBody"
        anchors { left: parent.left; bottom: parent.bottom }
        width: gridScaleInfo.sceneRoot && gridScaleInfo.camera
               ? gridScaleInfo.pixelScale * gridScaleInfo.sceneRoot.gridSize
                 / (gridScaleInfo.camera.viewVectorLength * gridScaleInfo.camera.viewVectorLenToFovScale)
               : 0
        height: gridScaleInfo.lineWidth
        color: design.misc.flyingObject.textColor

        Rectangle {
            anchors { left: parent.left; bottom: parent.bottom }
            width: gridScaleInfo.lineWidth
            height: gridScaleInfo.edgesHeight
            color: parent.color
        }

        Rectangle {
            anchors { right: parent.right; bottom: parent.bottom }
            width: gridScaleInfo.lineWidth
            height: gridScaleInfo.edgesHeight
            color: parent.color
        }
    }
}
