import QtQuick 2.12
import Torvik.Shared 1.0
import view3d 1.0 as View3d

import "."

/** The view's own commands that go to a place, for the bar: each is offered while the view says that it can run. */
Item {
    id: goTo

    property Item area: null
    /** The name under which the view's commands look for it. */
    readonly property Item window3d: area
    readonly property var map: area ? area.map : undefined
    readonly property bool addressKnown: !!map && (map.valueStreet + map.valueCity + map.valueCountry) !== ""

    readonly property BarGroup group: BarGroup {
        name: "goToMenuButton"
        title: qsTr("Go to")
        atEnd: true
        weight: 4

        BarCommand {
            name: "goToCameraButton"
            text: goTo.inOneLine(camera.text)
            icon: camera.icon.enabled
            on: camera.active
            enabled: camera.enabled && section.enabled
            switches: true
            onTriggered: camera.trigger()
        }
        BarCommand {
            name: "goToSectionButton"
            text: goTo.inOneLine(section.text)
            icon: section.icon.enabled
            enabled: section.enabled
            onTriggered: section.trigger()
        }
        BarCommand {
            name: "goToUpstreamButton"
            text: goTo.inOneLine(upstream.text)
            icon: upstream.icon.enabled
            enabled: upstream.enabled
            onTriggered: upstream.trigger()
        }
        BarCommand {
            name: "goToDownstreamButton"
            text: goTo.inOneLine(downstream.text)
            icon: downstream.icon.enabled
            enabled: downstream.enabled
            onTriggered: downstream.trigger()
        }
        BarCommand {
            name: "goToGpsButton"
            text: goTo.inOneLine(gpsPosition.text)
            icon: gpsPosition.icon.enabled
            enabled: gpsPosition.enabled
            onTriggered: gpsPosition.trigger()
        }
        BarCommand {
            name: "editGpsButton"
            text: qsTr("Latitude and longitude…")
            icon: editPosition.icon.enabled
            enabled: editPosition.enabled
            onTriggered: editPosition.trigger()
        }
        BarCommand {
            name: "goToAddressButton"
            text: qsTr("The last address")
            icon: editAddress.icon.enabled
            enabled: address.enabled && goTo.addressKnown
            onTriggered: addresses.run(address)
        }
        BarCommand {
            name: "editAddressButton"
            text: qsTr("An address…")
            icon: editAddress.icon.enabled
            enabled: editAddress.enabled
            onTriggered: addresses.run(editAddress)
        }
    }

    /** The view's texts are made for buttons of several lines. */
    function inOneLine(text) {
        return text.replace(/\n/g, " ")
    }

    /** The address that was gone to last, in this run of the program or an earlier one. */
    function takeLastAddress() {
        if (!map)
            return
        const last = AppSettingsLastAddress.loadLastAddressPosition()
        map.valueStreet = last[0] || ""
        map.valueCity = last[1] || ""
        map.valueCountry = last[2] || ""
    }

    visible: false
    onMapChanged: takeLastAddress()

    AddressService { id: addresses; map: goTo.map }
    View3d.GoToCamera { id: camera }
    View3d.GoToSection { id: section }
    View3d.GoToNodeUpStream { id: upstream }
    View3d.GoToNodeDownStream { id: downstream }
    View3d.GoToGPSPosition { id: gpsPosition; map: goTo.map }
    View3d.EditGPSPosition { id: editPosition; map: goTo.map }
    View3d.GoToGPSAddress { id: address; map: goTo.map }
    View3d.EditGPSAddress {
        id: editAddress

        map: goTo.map
        onRunningChanged: {
            if (!running)
                goTo.takeLastAddress()
        }
    }
}
