import QtPositioning 5.12
import QtQuick 2.12
import QtTest 1.12
import Torvik.Geo 1.0
import Torvik.Shared 1.0

import "qrc:/qml/view3d"

/** The commands that ask for a place or an address, and those that go there. */
Item {
    id: window3d

    property QtObject scene3d: QtObject {
        property QtObject sceneRoot: QtObject {
            property var selectedRenderable: null
        }
    }

    QtObject {
        id: map

        property var currentGpsLatitude
        property var currentGpsLongitude
        property var lastGpsLatitude
        property var lastGpsLongitude
        property var defaultCenter: QtPositioning.coordinate(47.5, 10.25)
        property string valueStreet
        property string valueCity
        property string valueCountry
        property bool gpsWorks: false
        property var places: []
        property var addresses: []

        function isGpsWorking() {
            return gpsWorks
        }

        function gotoPosition(coordinate) {
            places = places.concat([[coordinate.latitude, coordinate.longitude]])
        }

        function gotoAddress(address) {
            addresses = addresses.concat([address])
        }
    }

    QtObject {
        id: selected

        property vector3d position: Qt.vector3d(0, 3, 0)
    }

    EditGPSPosition { id: editPosition; map: map }
    GoToGPSPosition { id: goToPosition; map: map }
    EditGPSAddress { id: editAddress; map: map }
    GoToGPSAddress { id: goToAddress; map: map }
    GoToGPSPosition { id: withoutMap }

    EditGPSAddress {
        id: editNamedAddress

        map: map

        /** As a project whose forms name everything. */
        function templateLabel(column) {
            return "T " + column
        }
    }

    EditGPSAddress {
        id: editFromLocale

        map: map

        function initiateAddressValues() {
            lastAddressStreet = ""
            lastAddressCity = ""
            lastAddressCountry = "Polska"
        }
    }

    SignalSpy { id: screens; target: screenManager; signalName: "screenRequested" }

    TestCase {
        name: "GpsCommands"

        function init() {
            map.currentGpsLatitude = undefined
            map.currentGpsLongitude = undefined
            map.lastGpsLatitude = undefined
            map.lastGpsLongitude = undefined
            map.gpsWorks = false
            map.places = []
            map.addresses = []
            window3d.scene3d.sceneRoot.selectedRenderable = null
            screens.clear()
            GeoProjector.initFromMap(48.5, 11.25, 0)
            AppSettingsLastAddress.saveLastAddressPosition("Ring 1", "Celle", "Wunderland")
        }

        function cleanup() {
            editPosition.running = false
            editAddress.running = false
            GeoProjector.deinit()
            host.setActiveInspection(false)
        }

        function setGps(latitude, longitude) {
            map.currentGpsLatitude = latitude
            map.currentGpsLongitude = longitude
            map.gpsWorks = latitude !== undefined
        }

        function screenArguments(name) {
            compare(screens.count, 1)
            compare(screens.signalArguments[0][0], name)
            return screens.signalArguments[0][1]
        }

        function test_texts() {
            compare(editPosition.text, "Edit\nLatitude\nLongitude\nGPS")
            compare(goToPosition.text, "Go-To\nGPS")
            compare(editAddress.text, "Go-To\nAddress")
            compare(goToAddress.text, "")
            compare(editPosition.icon.enabled, design.icons.button3DEditGPS.enabled)
            compare(goToPosition.icon.enabled, design.icons.button3DGotoGPS.enabled)
            compare(editAddress.icon.enabled, design.icons.button3DGotoAddress.enabled)
            verify(String(editPosition.icon.enabled) !== String(goToPosition.icon.enabled))
            verify(String(editAddress.icon.enabled) !== String(goToPosition.icon.enabled))
            compare(goToAddress.icon, undefined)
        }

        function test_going_to_the_gps_needs_a_position() {
            verify(!withoutMap.enabled)
            verify(!goToPosition.enabled)
            map.currentGpsLatitude = 1.5
            verify(!goToPosition.enabled)
            map.currentGpsLongitude = 2.5
            verify(goToPosition.enabled)

            goToPosition.trigger()
            compare(map.places, [[1.5, 2.5]])
            compare(map.lastGpsLatitude, 1.5)
            compare(map.lastGpsLongitude, 2.5)
            verify(!goToPosition.running)
        }

        function test_the_position_screen_proposes_the_default_place() {
            editPosition.trigger()
            const args = screenArguments("Input::GpsPositionInputScreen")
            compare(args.caption, "Edit GPS Position")
            compare(args.inputMethodHints, Qt.ImhFormattedNumbersOnly)
            compare(args.initLatitude, 47.5)
            compare(args.initLongitude, 10.25)
            compare(args.requiredPositionPrecision, 7)
            verify(!args.isGpsWorkingFun())
            verify(editPosition.running)
        }

        function test_a_working_gps_proposes_its_place() {
            map.lastGpsLatitude = 9
            map.lastGpsLongitude = 8
            setGps(1.5, 2.5)
            editPosition.trigger()
            const args = screenArguments("Input::GpsPositionInputScreen")
            compare(args.initLatitude, 1.5)
            compare(args.initLongitude, 2.5)
            verify(args.isGpsWorkingFun())
        }

        function test_without_gps_the_last_place_is_proposed() {
            map.lastGpsLatitude = "9.5"
            map.lastGpsLongitude = "8.5"
            editPosition.trigger()
            const args = screenArguments("Input::GpsPositionInputScreen")
            compare(args.initLatitude, "9.5")
            compare(args.initLongitude, "8.5")
        }

        function test_a_selected_object_goes_before_a_working_gps() {
            setGps(1.5, 2.5)
            window3d.scene3d.sceneRoot.selectedRenderable = selected
            editPosition.trigger()
            const args = screenArguments("Input::GpsPositionInputScreen")
            compare(args.initLatitude, "48.5000000")
            compare(args.initLongitude, "11.2500000")
            compare(map.lastGpsLatitude, "48.5000000")
        }

        function test_the_position_that_was_put_in_is_gone_to() {
            editPosition.trigger()
            screenArguments("Input::GpsPositionInputScreen").screenCallback([" 48.25 ", "\t11.5"])
            compare(map.places, [[48.25, 11.5]])
            compare(map.lastGpsLatitude, "48.25")
            compare(map.lastGpsLongitude, "11.5")
            verify(!editPosition.running)
        }

        function test_half_a_position_is_kept_and_moves_nothing() {
            editPosition.trigger()
            editPosition.handlePosition(["48.25", ""])
            compare(map.places, [])
            compare(map.lastGpsLatitude, "48.25")
            compare(map.lastGpsLongitude, "")
            verify(!editPosition.running)
        }

        function test_a_missing_half_is_an_empty_text() {
            editPosition.trigger()
            editPosition.handlePosition([undefined, "11.5"])
            compare(map.lastGpsLatitude, "")
            compare(map.lastGpsLongitude, "11.5")
            editPosition.trigger()
            editPosition.handlePosition(["48.5", null])
            compare(map.lastGpsLongitude, "")
            compare(map.places, [])
            verify(!editPosition.running)
        }

        function test_a_cancelled_position_only_ends_the_command() {
            map.lastGpsLatitude = "9.5"
            map.lastGpsLongitude = "8.5"
            editPosition.trigger()
            screenArguments("Input::GpsPositionInputScreen").screenCallback(false)
            verify(!editPosition.running)
            compare(map.lastGpsLatitude, "9.5")
            compare(map.places, [])
        }

        function test_what_is_no_place_on_earth_is_kept_and_moves_nothing_data() {
            return [{ "tag": "comma", "result": ["48,25", "11,5"] }, { "tag": "letters", "result": ["north", "east"] },
                    { "tag": "beyond the pole", "result": ["91", "11"] }]
        }

        function test_what_is_no_place_on_earth_is_kept_and_moves_nothing(data) {
            editPosition.trigger()
            editPosition.handlePosition(data.result)
            compare(map.places, [])
            compare(map.lastGpsLatitude, data.result[0])
            verify(!editPosition.running)
        }

        function test_without_a_map_they_rest() {
            for (const command of [editPosition, goToPosition, editAddress, goToAddress]) {
                command.map = undefined
                verify(!command.enabled)
                command.map = map
            }
        }

        function test_a_map_that_goes_meanwhile_ends_them() {
            editPosition.trigger()
            editAddress.trigger()
            editPosition.map = undefined
            editAddress.map = undefined
            editPosition.handlePosition(["48.25", "11.5"])
            editAddress.handleAddress(["Ring 3", "Peine", ""])
            verify(!editPosition.running)
            verify(!editAddress.running)
            compare(AppSettingsLastAddress.loadLastAddressPosition(), ["Ring 3", "Peine", ""])
            editPosition.map = map
            editAddress.map = map
        }

        function test_going_to_the_maps_address() {
            map.valueStreet = "Ring 1"
            map.valueCity = "Celle"
            map.valueCountry = "D"
            goToAddress.trigger()
            compare(map.addresses, ["Ring 1,Celle,D"])
            verify(!goToAddress.running)
        }

        function test_the_address_screen_shows_the_last_address() {
            editAddress.trigger()
            const args = screenArguments("Input::GpsAddressInputScreen")
            compare(args.caption, "Edit Address")
            compare(args.defaultValue, "name")
            compare(args.inputMethodHints, Qt.ImhSensitiveData | Qt.ImhPreferLowercase | Qt.ImhNoPredictiveText)
            compare(args.model, [
                { "rowId": 0, "labelText": "Street", "inputText": "Ring 1" },
                { "rowId": 1, "labelText": "City", "inputText": "Celle" },
                { "rowId": 2, "labelText": "Country", "inputText": "Wunderland" }
            ])
            verify(editAddress.running)
        }

        function test_the_form_of_the_active_section_names_the_fields() {
            host.setActiveInspection(true)
            host.setActiveStructure()
            editAddress.labelStreet = ""
            editAddress.determineAddressLabels()
            compare(editAddress.labelStreet, "Street")
            compare(editAddress.templateLabel("OBJ_District"), "District")
            compare(editAddress.templateLabel("OBJ_Country"), "")
            compare(editAddress.labelCountry, "Country")
        }

        function test_labels_of_the_form_reach_the_screen_but_for_the_country() {
            editNamedAddress.trigger()
            const model = screenArguments("Input::GpsAddressInputScreen").model
            compare(model.map(function(row) { return row.labelText }), ["T OBJ_Street", "T OBJ_City", ""])
            editNamedAddress.handleAddress(false)
        }

        function test_a_country_alone_is_forgotten_once_it_was_proposed() {
            editFromLocale.trigger()
            compare(screenArguments("Input::GpsAddressInputScreen").model[2].inputText, "Polska")
            compare(editFromLocale.lastAddressCountry, "")
            editFromLocale.handleAddress(false)
        }

        function test_the_country_of_the_locale_is_proposed_and_not_kept() {
            AppSettingsLastAddress.saveLastAddressPosition("Ring 1", "Celle", "")
            editAddress.trigger()
            compare(screenArguments("Input::GpsAddressInputScreen").model[2].inputText,
                    Qt.locale(formatHelper.currentLocaleName).nativeCountryName)
            editAddress.lastAddressStreet = ""
            editAddress.lastAddressCity = ""
            editAddress.lastAddressCountry = "Polska"
            editAddress.cleanAutoFilledCountry()
            compare(editAddress.lastAddressCountry, "")
            editAddress.lastAddressCity = "Gdańsk"
            editAddress.lastAddressCountry = "Polska"
            editAddress.cleanAutoFilledCountry()
            compare(editAddress.lastAddressCountry, "Polska")
        }

        function test_the_address_that_was_put_in_is_looked_for_and_kept() {
            editAddress.trigger()
            screenArguments("Input::GpsAddressInputScreen").screenCallback([" Ring 2 ", "Peine", ""])
            compare(map.addresses, [" Ring 2 , Peine, "])
            compare(AppSettingsLastAddress.loadLastAddressPosition(), ["Ring 2", "Peine", ""])
            verify(!editAddress.running)
        }

        function test_an_empty_address_ends_the_command_data() {
            return [{ "tag": "empty", "result": ["", "", ""] }, { "tag": "short", "result": ["a", "b"] },
                    { "tag": "cancelled", "result": false }]
        }

        function test_an_empty_address_ends_the_command(data) {
            editAddress.trigger()
            editAddress.handleAddress(data.result)
            verify(!editAddress.running)
            compare(map.addresses, [])
            compare(AppSettingsLastAddress.loadLastAddressPosition(), ["Ring 1", "Celle", "Wunderland"])
        }
    }
}
