import QtQuick 2.12
import Torvik.Application 1.0
import Torvik.Database 1.0
import ostel.controls 1.0
import utils 1.0

/** The lateral that the inspection vehicle is passing: a tap leaves the inspection for it. */
Rectangle {
    id: button

    /** Name of the lateral. */
    property alias text: label.text
    property var selectedLateral
    /** The inspection ends as soon as its video is complete. */
    property bool isLateralQuickAccessRunning: false

    function closeInspection() {
        ostel.uiHelper.stopInclinationMeasurement()
        belmora.appStateData.activeInspection = DomainObjectProvider.invalidObject
    }

    function stopRecordingAndClose() {
        isLateralQuickAccessRunning = true
        WaitingBox.show()
        belmora.videoRecorder.stop()
        closeInspection()
    }

    function leaveWaiting() {
        isLateralQuickAccessRunning = false
        WaitingBox.hide()
    }

    function jumpToProjectOverviewScreen() {
        screenManager.show("ProjectOverview::ProjectOverviewScreen", {
            "requestSelectedObject": selectedLateral,
            "projectObject": belmora.appStateData.activeProject,
            "screenCallback": undefined
        })
    }

    function leaveForLateral() {
        if (!selectedLateral)
            return
        if (belmora.videoCreationHandler.state === VideoCreationHandler.StateIdle) {
            closeInspection()
            jumpToProjectOverviewScreen()
            return
        }
        MessageBox.question(translator.txt("MsgStopVideoRecordingCaption", "Confirmation required"),
                            translator.txt("MsgStopVideoRecording", "A video recording is currently in progress - it will "
                                           + "be stopped upon exit.\n\nAre you sure you want to close the current "
                                           + "inspection?"),
                            function(yes) {
                                if (yes)
                                    stopRecordingAndClose()
                            })
    }

    width: label.width + 24
    height: 40
    radius: 5
    color: design.misc.flyingObject.backgroungColor
    visible: false

    Text {
        id: label

        anchors.centerIn: parent
        font.pixelSize: design.misc.thumbnailItem.fontSize
    }

    MouseArea {
        anchors.fill: parent
        onClicked: button.leaveForLateral()
    }

    Connections {
        target: button.isLateralQuickAccessRunning ? belmora.videoCreationHandler : null
        function onVideoCreated() {
            button.leaveWaiting()
            button.jumpToProjectOverviewScreen()
        }
        function onErrorOccurred(errorCode) {
            button.leaveWaiting()
            MessageBox.error(translator.txt("ErrorMessageCaption", "Error"),
                             belmora.translationHelper.errorMessageFromErrorCode(errorCode))
            button.jumpToProjectOverviewScreen()
        }
    }

    Translator {
        id: translator

        translationClassName: "Torvik.Belmora.App.LateralQuickAccessButton"
    }
}
