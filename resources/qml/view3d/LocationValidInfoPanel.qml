import QtQuick 2.12
import Torvik.Geo 1.0
import utils 1.0

/** Warns that the chosen place lies outside the project's coordinate system; a click hides it. */
Row {
    id: locationValidInfoPanel

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
        width: 1120
        height: 40

        Rectangle {
            anchors.fill: parent
            color: "red"
            opacity: 0.55
        }

        Text {
            anchors.centerIn: parent
            color: "white"
            horizontalAlignment: Text.AlignHCenter
            text: translator.txt("LocationInvalid", "The selected location is outside the bounds of the chosen projection system. \nPlease change location or select a different projection system.")
        }

        MouseArea {
            anchors.fill: parent
            onClicked: locationValidInfoPanel.visible = false
        }
    }
}
