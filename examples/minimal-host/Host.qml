import QtQuick 2.12
import Torvik.Application 1.0

QtObject {
    property QtObject belmora: QtObject {
        property var appStateData: appState
        property QtObject videoCreationHandler: VideoCreationHandler {}
        property QtObject videoRecorder: QtObject { function stop() {} }
        property QtObject translationHelper: QtObject { function errorMessageFromErrorCode(code) { return "Error" } }
    }
    property QtObject ostel: QtObject { property QtObject uiHelper: QtObject { function stopInclinationMeasurement() {} } }
    property QtObject formatHelper: QtObject {
        property string currentLocaleName: Qt.locale().name
        function distanceUnitString() { return "m" }
        function convertLength(from, to, length) { return Number(length) }
    }
    property QtObject screenManager: QtObject { function show(name, args) { console.log("no screen " + name) } }
    property var pageStack: ({ "currentItem": { "_key": "Screens::InspectionScreen" } })
    property var font_Regular: ({ "name": "DejaVu Sans" })
    readonly property var icon: ({ "active": "", "enabled": "", "disabled": "" })
    property var design: ({
        "misc": {
            "manholeMaterial": { "coolColor": "#29211f", "warmColor": "#cc945c" },
            "flyingObject": { "backgroungColor": "white", "backgroungOpacity": 0.6, "textColor": "black", "fontSize": 14 },
            "thumbnailItem": { "fontSize": 16 }
        },
        "icons": {
            "compass": icon, "positionMode": icon, "rotationMode": icon, "button3DZoomPlusPipeViewscreen": icon,
            "button3DZoomMinusPipeViewscreen": icon, "buttonToggleFullSplitPipeViewscreen": icon,
            "buttonToggleRotationTranslationPipeViewscreen": icon
        }
    })
}
