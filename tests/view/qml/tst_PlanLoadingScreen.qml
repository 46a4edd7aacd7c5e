import QtQuick 2.12
import QtTest 1.12
import ostel.controls 1.0
import ostel.screens 1.0
import "qrc:/qml/view3d"

/** The screen that shows a plan being loaded. */
Item {
    id: window3d

    property QtObject scene3d: QtObject {
        property QtObject sceneRoot: QtObject {
            property bool nodes: true

            function sceneHasNodesWithPosition() { return nodes }
        }
    }
    property QtObject map: QtObject {
        property int resets: 0

        function resetGeoProjector() { ++resets }
    }

    width: 600
    height: 400

    QtObject {
        id: loader

        property int cancels: 0

        signal progressPlanLoadChanged(int progress)
        signal planLoadedChanged()
        signal corruptedPlanFile(var errorCode)
        signal fileTooLarge(var sizeInfo)
        signal pdfConverterProblem(var errorCode)

        function cancel() { ++cancels }
    }

    PlanLoadingScreen {
        id: screen

        filePath: "/media/usb stick/plans/site a.dxf"
        loadingController: loader
    }

    SignalSpy { id: closes; target: screenManager; signalName: "closeRequested" }

    TestCase {
        name: "PlanLoadingScreen"
        when: windowShown

        function init() {
            loader.cancels = 0
            window3d.map.resets = 0
            window3d.scene3d.sceneRoot.nodes = true
            screen.loadingController = loader
            screen.init()
            loader.cancels = 0
            window3d.map.resets = 0
            closes.clear()
        }

        function cleanup() {
            MessageBoxUtils.explain = undefined
            while (MessageBox.boxes.length > 0)
                MessageBox.answer(true)
        }

        function box() {
            return MessageBox.boxes.length > 0 ? MessageBox.boxes[0] : { "caption": "", "text": "" }
        }

        function test_itTellsWhichFileAndHowFar() {
            compare(findChild(screen, "progressCaption").text, "Loading Plan File")
            compare(findChild(screen, "progressLabel").text, "Plan file loaded: site a.dxf")
            compare(screen.loadingProgress, 0)

            loader.progressPlanLoadChanged(40)

            compare(screen.loadingProgress, 40)
            compare(screen.progress, 40)
            compare(findChild(screen, "progressTrack").children[0].width,
                    findChild(screen, "progressTrack").width * 0.4)
        }

        function test_beginningAnewCancelsWhatLoads() {
            loader.progressPlanLoadChanged(40)

            screen.init()

            compare(screen.loadingProgress, 0)
            compare(loader.cancels, 1)
            compare(window3d.map.resets, 0)
        }

        function test_anEmptySceneIsTiedAnew() {
            window3d.scene3d.sceneRoot.nodes = false

            screen.init()

            compare(window3d.map.resets, 1)
            compare(loader.cancels, 1)
        }

        function test_withoutAControllerNothingIsCancelled() {
            window3d.scene3d.sceneRoot.nodes = false
            screen.loadingController = undefined

            screen.init()

            compare(window3d.map.resets, 0)
        }

        function test_backCancelsAndHomeDoesNothing() {
            mouseClick(findChild(screen, "backButton"))

            compare(loader.cancels, 1)
            compare(closes.count, 0)
            verify(!findChild(screen, "homeButton").enabled)
        }

        function test_aPlanThatIsNotLaidIsNotAnnounced() {
            loader.planLoadedChanged()

            compare(MessageBox.boxes.length, 0)
        }

        function test_failuresAreToldAndThenItCloses_data() {
            return [
                { tag: "corrupted", fail: function() { loader.corruptedPlanFile({ "errorCode": 0x150101 }) },
                  says: "site a.dxf" },
                { tag: "tooLarge", fail: function() {
                    loader.fileTooLarge({ "currentWidth": 5000, "currentHeight": 10, "maxWidth": 4048, "maxHeight": 4048 })
                  }, says: "5000 x 10" },
                { tag: "converter", fail: function() { loader.pdfConverterProblem({ "errorCode": 0x150202 }) },
                  says: "PDF" }
            ]
        }

        function test_failuresAreToldAndThenItCloses(row) {
            row.fail()

            verify(box().text.indexOf(row.says) >= 0, box().text)
            compare(closes.count, 0)
            MessageBox.answer(true)
            compare(closes.count, 1)
        }

        function test_theApplicationKnowsMore() {
            const asked = []
            MessageBoxUtils.explain = function(kind, details) {
                asked.push(kind, details.errorCode)
                return "It is a binary DXF."
            }

            loader.corruptedPlanFile({ "errorCode": 0x150101 })

            compare(asked, ["corrupted", 0x150101])
            compare(box().text, "It is a binary DXF.")
        }
    }
}
