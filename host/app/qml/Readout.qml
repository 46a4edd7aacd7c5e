import QtQuick 2.12
import Torvik.Geo 1.0 as TorvikGeo

import "."

/** Where the view's centre lies, and the scale. Follows the camera, a few times a second. */
Item {
    id: readout

    property Item scene: null
    property string coordinates
    property string scale

    implicitHeight: 32

    function refresh() {
        if (!scene || scene.height <= 0) {
            return
        }
        scale = qsTr("1 : %1").arg(Number(scene.getScaleProportion()).toLocaleString(Qt.locale(), "f", 0))
        coordinates = TorvikGeo.GeoProjector.initialized
            ? coordinatesOf(TorvikGeo.GeoProjector.wktStringForWorldPos(scene.camera.viewCenter)) : ""
    }

    function coordinatesOf(wkt) {
        const numbers = wkt.match(/-?\d+(\.\d+)?([eE][-+]?\d+)?/g)
        if (!numbers || numbers.length < 2) {
            return ""
        }
        return qsTr("E %1   N %2").arg(Number(numbers[0]).toFixed(1)).arg(Number(numbers[1]).toFixed(1))
    }

    Component.onCompleted: refresh()

    Connections {
        target: readout.scene ? readout.scene.camera : null

        function onCameraProjectionChanged() {
            if (!throttle.running) {
                throttle.start()
            }
        }
    }

    Connections {
        target: language

        function onChanged() {
            readout.refresh()
        }
    }

    Timer {
        id: throttle

        interval: 150
        onTriggered: readout.refresh()
    }

    Text {
        objectName: "coordinates"
        anchors { left: parent.left; leftMargin: 2 * Style.gap; verticalCenter: parent.verticalCenter }
        color: Style.quietInk
        font.pixelSize: Style.smallTextSize
        text: readout.coordinates
    }

    Text {
        objectName: "scale"
        anchors { right: parent.right; rightMargin: 2 * Style.gap; verticalCenter: parent.verticalCenter }
        color: Style.quietInk
        font.pixelSize: Style.smallTextSize
        text: readout.scale
    }
}
