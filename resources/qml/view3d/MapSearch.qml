import QtQuick 2.12
import QtLocation 5.12

/** Looks for addresses, and for the address of a place. */
GeocodeModel {
    id: search

    /** Whether the map is to go to what is found. */
    property bool translateMap: true

    /** The best hit. */
    signal found(var location)
    /** A search that was answered, with no hit. */
    signal foundNothing()

    function ask(addressOrPlace, goThere) {
        translateMap = goThere
        query = addressOrPlace
        update()
    }

    autoUpdate: false
    onLocationsChanged: {
        if (count > 0) {
            found(get(0))
        } else if (status === GeocodeModel.Ready) {
            foundNothing()
        }
    }
}
