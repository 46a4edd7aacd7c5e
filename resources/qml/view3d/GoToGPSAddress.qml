import QtQuick 2.12
import ostel.commands 1.0
import utils 1.0

/** Goes to the address that the map holds. */
CommandBase {
    property var map

    enabled: !!map

    function run() {
        map.gotoAddress(map.valueStreet + "," + map.valueCity + "," + map.valueCountry)
        running = false
    }

    Translator {
        translationClassName: "Ostel.Sightlog.App.Essential3DCommands"
    }
}
