import QtQuick 2.12

/** Shows a length in the unit that suits it. */
Rectangle {
    id: lengthLabel

    property real baseMargin: 10
    /** In metres. */
    property real value: 0

    function determineText() {
        if (formatHelper.distanceUnitString() === "ft") {
            return Math.round(value * 3.28) + " ft"
        }
        if (value < 1) {
            return Math.round(value * 100.0) + " cm"
        }
        return Math.round(value) + " m"
    }

    z: 1
    radius: 5
    color: Qt.rgba(0.7, 0.7, 0.7, 0.4)
    implicitWidth: label.implicitWidth + 2 * baseMargin
    implicitHeight: label.implicitHeight + 2 * baseMargin

    Text {
        id: label

        anchors.fill: parent
        anchors.margins: lengthLabel.baseMargin
        color: "black"
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        maximumLineCount: 1
        elide: Text.ElideRight
        font.pixelSize: design.misc.thumbnailItem.fontSize
        font.family: font_Regular.name
        // Read for its changes, where the host's unit has any.
        text: formatHelper.distanceUnit, lengthLabel.determineText()
    }
}
