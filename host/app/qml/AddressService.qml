import QtQuick 2.12
import QtLocation 5.12
import ostel.controls 1.0

/** The service that finds addresses for the map; tells the user when there is none, when it fails, and when it finds
 *  nothing. */
Item {
    id: service

    /** The view's map; undefined without one. */
    property var map
    readonly property string caption: qsTr("Search for an address")

    /** Its address; empty without one. */
    function host() {
        return typeof mapEndpoints !== "undefined" && mapEndpoints ? mapEndpoints.geocodingHost || "" : ""
    }

    /** Runs a command that needs the service. */
    function run(command) {
        if (host() !== "")
            command.trigger()
        else
            MessageBox.info(caption, qsTr("No service is chosen that finds addresses. MAPGEOCODING in the settings names "
                                          + "one."))
    }

    visible: false

    Connections {
        target: service.map || null

        function onGeocodeModelStatusChanged(geocodeModelStatus, geocodeModelErrorCode) {
            if (geocodeModelStatus !== GeocodeModel.Error)
                return
            MessageBox.error(service.caption, geocodeModelErrorCode === GeocodeModel.CommunicationError
                ? qsTr("The service at %1 cannot be reached, or answers with an error.").arg(service.host())
                : qsTr("The service at %1 gives no answer that can be read.").arg(service.host()))
        }
        function onNothingFound() {
            MessageBox.info(service.caption, qsTr("Nothing is found under this address."))
        }
    }
}
