import QtPositioning 5.12
import QtQuick 2.12
import Torvik.Geo 1.0
import ostel.commands 1.0
import utils 1.0

/** Asks for a latitude and a longitude, and goes there. */
CommandBase {
    id: command

    property var map
    readonly property int requiredPositionPrecision: 7

    text: translator.txt("EditGpsButton", "Edit\nLatitude\nLongitude\nGPS")
    icon: design.icons.button3DEditGPS
    enabled: !!map

    function run() {
        proposePosition()
        screenManager.show("Input::GpsPositionInputScreen", {
            "caption": translator.txt("TxtGpsPositionInput", "Edit GPS Position"),
            "screenCallback": handlePosition,
            "inputMethodHints": Qt.ImhFormattedNumbersOnly,
            "initLatitude": map.lastGpsLatitude || map.defaultCenter.latitude,
            "initLongitude": map.lastGpsLongitude || map.defaultCenter.longitude,
            "isGpsWorkingFun": map.isGpsWorking,
            "requiredPositionPrecision": requiredPositionPrecision
        })
    }

    /** Where the user stands, or better, what he has selected. */
    function proposePosition() {
        if (map.isGpsWorking()) {
            map.lastGpsLatitude = map.currentGpsLatitude
            map.lastGpsLongitude = map.currentGpsLongitude
        }
        const selected = window3d.scene3d ? window3d.scene3d.sceneRoot.selectedRenderable : null
        if (selected) {
            const at = selected.position
            const place = GeoProjector.geoCoordsDegFromPointOnGround(at.x, at.y, at.z)
            map.lastGpsLatitude = place.y.toFixed(requiredPositionPrecision)
            map.lastGpsLongitude = place.x.toFixed(requiredPositionPrecision)
        }
    }

    /** `result` holds latitude and longitude as texts; false for a cancelled input. */
    function handlePosition(result) {
        if (result && map)
            takePosition(trimmed(result[0]), trimmed(result[1]))
        running = false
    }

    function takePosition(latitude, longitude) {
        map.lastGpsLatitude = latitude
        map.lastGpsLongitude = longitude
        const place = QtPositioning.coordinate(Number(latitude), Number(longitude))
        // What is no place on earth would take the camera out of the world.
        if (latitude && longitude && place.isValid)
            map.gotoPosition(place)
    }

    function trimmed(text) {
        return text ? String(text).trim() : ""
    }

    Translator {
        id: translator

        translationClassName: "Ostel.Sightlog.App.EditGPSPosition"
    }
}
