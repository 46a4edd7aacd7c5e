import QtQuick 2.12
import com.torvik.view3d 1.0 as Torvik3d
import ostel.controls 1.0
import ostel.screens 1.0
import projectmanagement 1.0
import screens.screens 1.0
import utils 1.0

/** Shows the load of a plan, and how it ended. Expects a window3d around it. */
CopyProgressBaseForm {
    id: screen

    /** Of the plan. */
    property string filePath
    /** A PlanLoader or FloorPlanLoader. */
    property var loadingController
    property int loadingProgress: 0

    function close() {
        screenManager.close()
    }

    /** Begins anew: what is still loading is cancelled. */
    function init() {
        loadingProgress = 0
        cancelLoading()
    }

    function cancelLoading() {
        if (!loadingController)
            return
        const scene = typeof window3d !== "undefined" && window3d ? window3d.scene3d : null
        if (scene && window3d.map && !scene.sceneRoot.sceneHasNodesWithPosition())
            window3d.map.resetGeoProjector()
        loadingController.cancel()
    }

    captionText: translator.txt("TxtPlanFileCaption", "Loading Plan File")
    labelText: translator.txt("TxtPlanFileLabel", "Plan file loaded:")
    elementName: filePath.substring(filePath.lastIndexOf("/") + 1)
    progress: loadingProgress

    Connections {
        target: screen.loadingController || null
        // A loader of floors has no planLoadedChanged.
        ignoreUnknownSignals: true

        function onProgressPlanLoadChanged(progress) {
            screen.loadingProgress = progress
        }
        function onPlanLoadedChanged() {
            if (Torvik3d.SceneEntities.planLoaded) {
                MessageBox.info(translator.txt("PlanLoadFinishedTitle", "Plan file loading finished"),
                                translator.txt("PlanLoadFinishedCaption", "Plan file loading finished. Close this "
                                               + "dialog and then you can safely remove USB stick."), screen.close)
            }
        }
        function onCorruptedPlanFile(errorCode) {
            MessageBoxUtils.showFileCorrupted(screen.close, { "errorCode": errorCode.errorCode }, screen.elementName)
        }
        function onFileTooLarge(sizeInfo) {
            MessageBoxUtils.showErrorFileTooLarge(sizeInfo, screen.close)
        }
        function onPdfConverterProblem(errorCode) {
            MessageBoxUtils.showPdfConverterProblem(screen.close, { "errorCode": errorCode.errorCode })
        }
    }

    CommandPanelBase {
        homeButtonEnabled: false
        onBackButtonClicked: screen.cancelLoading()

        Repeater {
            model: 6

            CommandButton {
                y: Raster.calcHeight(index)
                enabled: false
            }
        }
    }

    Translator {
        id: translator

        translationClassName: "Ostel.Sightlog.App.PlanLoadingScreen"
    }
}
