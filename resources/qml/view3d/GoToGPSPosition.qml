import QtPositioning 5.12
import QtQuick 2.12
import ostel.commands 1.0
import utils 1.0

/** Goes to where the tablet is. */
CommandBase {
    property var map

    text: translator.txt("GoToGpsButton", "Go-To\nGPS")
    icon: design.icons.button3DGotoGPS
    enabled: !!map && map.currentGpsLatitude !== undefined && map.currentGpsLongitude !== undefined

    function run() {
        map.gotoPosition(QtPositioning.coordinate(map.currentGpsLatitude, map.currentGpsLongitude))
        map.lastGpsLatitude = map.currentGpsLatitude
        map.lastGpsLongitude = map.currentGpsLongitude
        running = false
    }

    Translator {
        id: translator

        translationClassName: "Ostel.Sightlog.App.Essential3DCommands"
    }
}
