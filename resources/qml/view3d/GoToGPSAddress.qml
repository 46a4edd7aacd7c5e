import QtQuick 2.12
import ostel.commands 1.0

/** Goes to the address that the map holds. */
CommandBase {
    property var map

    function run() {
        map.gotoAddress(map.valueStreet + "," + map.valueCity + "," + map.valueCountry)
        running = false
    }
}
