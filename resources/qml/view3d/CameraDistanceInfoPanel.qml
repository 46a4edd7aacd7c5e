import QtQuick 2.12
import utils 1.0

/** Warns that the camera is far from the scene's origin; a click hides it until the camera comes back and leaves
 *  again. */
Item {
    id: cameraDistanceInfoPanel

    /** Kept free on both sides of the text, where something lies over the panel. */
    property real margin: 0
    /** There is a compass to click. */
    property bool compassShown: true

    width: parent.width
    height: message.implicitHeight + 20
    visible: false

    Translator {
        id: translator

        translationClassName: "Torvik.Belmora.App.CameraDistanceInfoPanel"
    }

    Connections {
        target: scene3d.camera

        function onTooFarFromOriginChanged() {
            cameraDistanceInfoPanel.visible = scene3d.camera.tooFarFromOrigin
        }
    }

    Rectangle {
        anchors.fill: parent
        color: "red"
        opacity: 0.55
    }

    Text {
        id: message

        objectName: "message"
        anchors.centerIn: parent
        width: parent.width - 2 * cameraDistanceInfoPanel.margin
        color: "white"
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.WordWrap
        text: cameraDistanceInfoPanel.compassShown
              ? translator.txt("CameraTooFarMessage", "3d view or map is too far from inspection area. \nPlease click compass to go back to inspection site.")
              : translator.txt("CameraTooFarFitMessage", "3d view or map is too far from inspection area. \nPlease fit it in view to go back to inspection site.")
    }

    MouseArea {
        anchors.fill: parent
        onClicked: cameraDistanceInfoPanel.visible = false
    }
}
