import QtQuick 2.12
import Torvik.Geo 1.0
import utils 1.0

/** Warns that the chosen place lies outside the project's coordinate system; a click hides it. */
Row {
    id: locationValidInfoPanel

    /** As wide as it may be at most. */
    property real space: 1120

    visible: false

    Translator {
        id: translator

        translationClassName: "Torvik.Belmora.App.LocationValidInfoPanel"
    }

    Connections {
        target: GeoProjector

        function onLocationWithinProjectionRegion(inRegion) {
            locationValidInfoPanel.visible = !inRegion
        }
    }

    Item {
        objectName: "box"
        width: Math.min(1120, locationValidInfoPanel.space)
        // Grows only where the text has to wrap.
        height: width < 1120 ? Math.max(40, message.implicitHeight + 6) : 40

        Rectangle {
            anchors.fill: parent
            color: "red"
            opacity: 0.55
        }

        Text {
            id: message

            objectName: "message"
            anchors.centerIn: parent
            width: parent.width
            color: "white"
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.WordWrap
            text: translator.txt("LocationInvalid", "The selected location is outside the bounds of the chosen projection system. \nPlease change location or select a different projection system.")
        }

        MouseArea {
            anchors.fill: parent
            onClicked: locationValidInfoPanel.visible = false
        }
    }
}
