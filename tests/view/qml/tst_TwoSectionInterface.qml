import Qt3D.Render 2.12
import QtQuick 2.12
import QtTest 1.12

import "qrc:/qml/view3d"

/** Pointing at segments on the ground. */
CameraWindow {
    id: window3d

    property Item scene3d: scene

    width: 600
    height: 400

    Item {
        id: scene

        property alias camera: theCamera
        property QtObject sceneRoot: QtObject {
            signal deselectionMouseEvent(var mouseEvent)
        }
        property QtObject cameraHolder: Camera {
            id: theCamera

            fieldOfView: 3
            aspectRatio: 1.5
        }

        anchors.fill: parent
    }

    TwoSectionInterface {
        id: pointing
    }

    SignalSpy { id: results; target: pointing; signalName: "resultPointsReady" }
    SignalSpy { id: ends; target: pointing; signalName: "finished" }
    SignalSpy { id: screens; target: screenManager; signalName: "screenRequested" }

    TestCase {
        name: "TwoSectionInterface"
        when: windowShown

        property var heard: []

        function init() {
            theCamera.fieldOfView = 3
            theCamera.position = Qt.vector3d(0, 500, 0)
            theCamera.viewCenter = Qt.vector3d(0, 0, 0)
            theCamera.upVector = Qt.vector3d(0, 0, 1)
            results.clear()
            ends.clear()
            screens.clear()
            heard = []
        }

        function cleanup() {
            pointing.finish()
        }

        function start(mode) {
            pointing.oprationMode = mode
            pointing.enabled = true
        }

        function tap(x, y) {
            scene.sceneRoot.deselectionMouseEvent({ "x": x, "y": y })
        }

        function pointer(number) {
            return findChild(pointing, "pointSetter" + number)
        }

        function ground(x, y) {
            return Utils3D.pointScreenToWorldGround(x, y, theCamera, 600, 400)
        }

        function compareVectors(actual, expected) {
            verify(actual.minus(expected).length() < 1e-3, actual + " is not " + expected)
        }

        function test_at_first_it_is_out_of_service() {
            verify(!pointing.enabled)
            verify(!pointing.visible)
            compare(pointing.getCurrentStepDescription(), "")
            compare(pointing.ifNextStepButtonShouldBeVisible(), false)
            const before = pointing.state
            tap(10, 10)
            compare(pointing.state, before)
        }

        function test_its_modes() {
            compare(TwoSectionMode.twoSections, 1)
            compare(TwoSectionMode.oneSection, 2)
            compare(TwoSectionMode.oneSectionAndValue, 4)
            compare(pointing.stateNames, ["noPointerYet", "selectingFirstSectionStartPoint",
                "selectingFirstSectionEndPoint", "noPointerForSecondSection", "selectingSecondSectionFirstPoint",
                "confirmation", "confirmed"])
        }

        function test_what_it_says_data() {
            const place = ["Step 1: Please tap on the plan to define the reference segment",
                           "Step 1: Please tap on the plan to define the reference segment",
                           "Step 2: Please press NEXT STEP to continue",
                           "Step 3: Please tap on the map to define the destination segment",
                           "Step 3: Please tap on the map to define the destination segment",
                           "Step 4: To see the result press NEXT STEP again"]
            const north3 = "Step 3: To see the result press NEXT STEP again"
            const value1 = "Step 1: Please tap on the plan to define the segment to be scaled by value"
            const value2 = "Step 2. Press NEXT STEP to enter the length and see the result"
            return [
                { "tag": "two sections", "mode": 1, "texts": place },
                { "tag": "one section", "mode": 2,
                  "texts": ["Step 1: Please tap on the plan to define the south point of the compass",
                            "Step 2: Please tap on the plan to define the north point of the compass",
                            value2, place[3], place[4], north3] },
                { "tag": "one section and value", "mode": 4,
                  "texts": [value1, value1, value2, place[3], place[4], north3] }
            ]
        }

        function test_what_it_says(data) {
            start(data.mode)
            for (let i = 0; i < data.texts.length; ++i) {
                pointing.state = pointing.stateNames[i]
                compare(pointing.getCurrentStepDescription(), data.texts[i])
            }
            const steps = Qt.createQmlObject('import "qrc:/qml/view3d"; TwoSectionSteps {}', pointing)
            compare(steps.description(data.mode, 6), "")
            compare(steps.description(data.mode, 0), data.texts[0])
            steps.destroy()
        }

        function test_two_segments_take_tap_tap_button_twice() {
            start(TwoSectionMode.twoSections)
            verify(pointing.ifNextStepButtonShouldBeVisible())
            tap(100, 100)
            compare(pointing.state, "selectingFirstSectionStartPoint")
            verify(pointer(1).visible)
            verify(!pointer(2).visible)
            verify(!pointing.ifNextStepButtonShouldBeEnabled())
            tap(200, 100)
            compare(pointing.state, "selectingFirstSectionEndPoint")
            verify(pointer(2).visible)
            verify(pointing.ifNextStepButtonShouldBeEnabled())
            pointing.proceedToNextStep()
            compare(pointing.state, "noPointerForSecondSection")
            verify(!pointer(1).visible)
            verify(!pointer(2).visible)
            tap(300, 300)
            compare(pointing.state, "selectingSecondSectionFirstPoint")
            tap(300, 350)
            compare(pointing.state, "confirmation")
            verify(pointing.ifNextStepButtonShouldBeEnabled())
            pointing.proceedToNextStep()

            compare(results.count, 1)
            compareVectors(results.signalArguments[0][0], ground(100, 100))
            compareVectors(results.signalArguments[0][1], ground(200, 100))
            compareVectors(results.signalArguments[0][2], ground(300, 300))
            compareVectors(results.signalArguments[0][3], ground(300, 350))
            compare(ends.count, 1)
            verify(!pointing.enabled)
            compare(pointing.resultPoints.length, 0)
        }

        function test_while_the_button_is_asked_for_a_tap_corrects_the_second_point() {
            start(TwoSectionMode.twoSections)
            tap(100, 100)
            tap(200, 100)
            tap(250, 120)
            compare(pointing.state, "selectingFirstSectionEndPoint")
            pointing.proceedToNextStep()
            compareVectors(pointing.resultPoints[1], ground(250, 120))
        }

        function test_north_takes_two_taps() {
            start(TwoSectionMode.oneSection)
            tap(100, 300)
            compare(pointing.state, "selectingFirstSectionStartPoint")
            tap(100, 100)
            compare(pointing.state, "confirmation")
            verify(pointer(2).visible)
            pointing.proceedToNextStep()

            compareVectors(results.signalArguments[0][0], ground(100, 300))
            compareVectors(results.signalArguments[0][1], ground(100, 100))
            compareVectors(results.signalArguments[0][2], Qt.vector3d(0, 0, 0))
            compareVectors(results.signalArguments[0][3], Qt.vector3d(0, 0, 0))
        }

        function test_back_from_the_confirmation_of_north_is_the_start_point() {
            start(TwoSectionMode.oneSection)
            tap(100, 300)
            tap(100, 100)
            pointing.previousStateOfOperationMode()
            compare(pointing.state, "selectingFirstSectionStartPoint")
            pointing.previousStateOfOperationMode()
            compare(pointing.state, "noPointerYet")
            pointing.previousStateOfOperationMode()
            compare(pointing.state, "noPointerYet")
        }

        function test_back_from_the_confirmation_of_a_length_is_the_start_point_too() {
            start(TwoSectionMode.oneSectionAndValue)
            tap(100, 100)
            tap(200, 150)
            pointing.state = "confirmation"
            pointing.previousStateOfOperationMode()
            compare(pointing.state, "selectingFirstSectionStartPoint")
        }

        function test_only_two_segments_have_pointers_to_put_back() {
            start(TwoSectionMode.oneSectionAndValue)
            tap(100, 100)
            tap(200, 150)
            tap(250, 180)
            pointing.state = "noPointerForSecondSection"
            pointing.previousStateOfOperationMode()
            compare(pointing.state, "selectingFirstSectionEndPoint")
            fuzzyCompare(pointer(2).center.x, 250, 0.1)
        }

        function test_back_to_the_first_segment_puts_its_pointers_back() {
            start(TwoSectionMode.twoSections)
            tap(100, 100)
            tap(200, 150)
            pointing.proceedToNextStep()
            tap(300, 300)
            pointing.previousStateOfOperationMode()
            pointing.previousStateOfOperationMode()
            compare(pointing.state, "selectingFirstSectionEndPoint")
            fuzzyCompare(pointer(1).center.x, 100, 0.1)
            fuzzyCompare(pointer(1).center.y, 100, 0.1)
            fuzzyCompare(pointer(2).center.x, 200, 0.1)
            fuzzyCompare(pointer(2).center.y, 150, 0.1)
        }

        function test_a_segment_and_its_length() {
            start(TwoSectionMode.oneSectionAndValue)
            tap(100, 100)
            tap(200, 100)
            pointing.proceedToNextStep()
            compare(screens.count, 1)
            compare(screens.signalArguments[0][0], "Input::ValueInputScreen")
            const args = screens.signalArguments[0][1]
            compare(args.caption, "Set section distance value")
            compare(args.labelText, "Section distance value [m]")
            compare(args.defaultValue, 0)
            compare(args.validator.bottom, 0)
            compare(args.inputMethodHints, Qt.ImhDigitsOnly | Qt.ImhNoPredictiveText)
            compare(pointing.state, "selectingFirstSectionEndPoint")

            args.screenCallback("12.5")
            compare(results.count, 1)
            compareVectors(results.signalArguments[0][0], ground(100, 100))
            compareVectors(results.signalArguments[0][1], ground(200, 100))
            compareVectors(results.signalArguments[0][2], Qt.vector3d(12.5, 0, 0))
            compareVectors(results.signalArguments[0][3], Qt.vector3d(0, 0, 0))
        }

        function test_a_length_in_feet_becomes_metres() {
            host.setFeet(true)
            start(TwoSectionMode.oneSectionAndValue)
            tap(100, 100)
            tap(200, 100)
            pointing.proceedToNextStep()
            const args = screens.signalArguments[0][1]
            host.setFeet(false)
            compare(args.labelText, "Section distance value [ft]")
            args.screenCallback("10")
            fuzzyCompare(pointing.sectionDistanceValue, 3.048, 1e-9)
        }

        function test_a_cancelled_length_keeps_state_and_points_data() {
            return [{ "tag": "undefined", "answer": undefined }, { "tag": "null", "answer": null },
                    { "tag": "false", "answer": false }, { "tag": "empty", "answer": "" }]
        }

        function test_a_cancelled_length_keeps_state_and_points(data) {
            start(TwoSectionMode.oneSectionAndValue)
            tap(100, 100)
            tap(200, 100)
            pointing.proceedToNextStep()
            screens.signalArguments[0][1].screenCallback(data.answer)
            compare(pointing.state, "selectingFirstSectionEndPoint")
            compare(results.count, 0)
            compare(pointing.resultPoints.length, 2)
            verify(pointing.enabled)
        }

        function test_there_is_one_handler_at_a_time() {
            const first = function() { heard.push("first") }
            const second = function() { heard.push("second") }
            start(TwoSectionMode.oneSection)
            pointing.connectToResultPoints(first)
            host.expectLog("handler already connected - please disconnect first")
            pointing.connectToResultPoints(second)
            tap(100, 300)
            tap(100, 100)
            pointing.proceedToNextStep()
            compare(heard, ["first"])

            start(TwoSectionMode.oneSection)
            pointing.connectToResultPoints(second)
            pointing.disconnectFromResultPoints()
            pointing.disconnectFromResultPoints()
            tap(100, 300)
            tap(100, 100)
            pointing.proceedToNextStep()
            compare(heard, ["first"])
        }

        function test_the_pointers_keep_their_ground_while_the_view_moves() {
            start(TwoSectionMode.twoSections)
            tap(100, 100)
            tap(200, 100)
            const first = ground(100, 100)
            theCamera.viewCenter = Qt.vector3d(2, 0, 3)
            theCamera.position = Qt.vector3d(2, 500, 3)
            const at = Utils3D.pointWorldToScreen(theCamera, first, 600, 400)
            fuzzyCompare(pointer(1).center.x, at.x, 0.01)
            fuzzyCompare(pointer(1).center.y, at.y, 0.01)
            verify(Math.abs(at.x - 100) > 10)
            pointing.proceedToNextStep()
            compareVectors(pointing.resultPoints[0], first)
        }

        function test_the_pointers_keep_their_ground_while_the_view_turns_or_changes_its_size() {
            start(TwoSectionMode.twoSections)
            tap(100, 100)
            const first = ground(100, 100)
            theCamera.upVector = Qt.vector3d(1, 0, 0)
            let at = Utils3D.pointWorldToScreen(theCamera, first, 600, 400)
            verify(Math.abs(at.x - 100) + Math.abs(at.y - 100) > 20)
            fuzzyCompare(pointer(1).center.x, at.x, 0.01)
            fuzzyCompare(pointer(1).center.y, at.y, 0.01)
            window3d.width = 500
            at = Utils3D.pointWorldToScreen(theCamera, first, 500, 400)
            fuzzyCompare(pointer(1).center.x, at.x, 0.01)
            window3d.width = 600
        }

        function test_what_is_no_length_is_not_taken() {
            start(TwoSectionMode.oneSectionAndValue)
            tap(100, 100)
            tap(200, 100)
            pointing.proceedToNextStep()
            screens.signalArguments[0][1].screenCallback("x")
            compare(pointing.state, "selectingFirstSectionEndPoint")
            compare(results.count, 0)
        }

        function test_a_length_that_comes_too_late_is_not_taken() {
            start(TwoSectionMode.oneSectionAndValue)
            tap(100, 100)
            tap(200, 100)
            pointing.proceedToNextStep()
            pointing.finish()
            screens.signalArguments[0][1].screenCallback("5")
            compare(results.count, 0)
            compare(ends.count, 1)
        }

        function test_a_pointer_is_dragged() {
            start(TwoSectionMode.twoSections)
            tap(100, 100)
            mousePress(window3d, 100, 100)
            mouseMove(window3d, 120, 110)
            mouseMove(window3d, 150, 140)
            mouseRelease(window3d, 150, 140)
            fuzzyCompare(pointer(1).center.x, 150, 1)
            fuzzyCompare(pointer(1).center.y, 140, 1)
            compareVectors(pointer(1).savedWorldPosition, ground(pointer(1).center.x, pointer(1).center.y))
            compareVectors(pointing.resultPoints[0], pointer(1).savedWorldPosition)
            compare(pointing.state, "selectingFirstSectionStartPoint")
        }

        function test_a_pointer_dragged_while_the_button_waits_counts_with_the_button() {
            start(TwoSectionMode.twoSections)
            tap(100, 100)
            tap(300, 300)
            mousePress(window3d, 100, 100)
            mouseMove(window3d, 120, 110)
            mouseMove(window3d, 150, 140)
            mouseRelease(window3d, 150, 140)
            compareVectors(pointing.resultPoints[0], ground(100, 100))
            pointing.proceedToNextStep()
            compareVectors(pointing.resultPoints[0], pointer(1).savedWorldPosition)
            fuzzyCompare(pointer(1).center.x, 150, 1)
        }

        /** From 20 degrees above the ground, with the sky in the upper part. */
        function seeTheSky() {
            theCamera.fieldOfView = 60
            theCamera.position = Qt.vector3d(0, 34, -94)
            theCamera.upVector = Qt.vector3d(0, 0.94, 0.34)
        }

        function test_the_sky_is_no_place_for_a_point() {
            seeTheSky()
            start(TwoSectionMode.twoSections)
            tap(300, 5)
            compare(pointing.state, "noPointerYet")
            tap(300, 300)
            compare(pointing.state, "selectingFirstSectionStartPoint")
            const before = ground(300, 300)
            tap(300, 5)
            compare(pointing.state, "selectingFirstSectionStartPoint")
            mousePress(window3d, 300, 300)
            mouseMove(window3d, 300, 200)
            mouseMove(window3d, 300, 5)
            mouseRelease(window3d, 300, 5)
            compareVectors(pointer(1).savedWorldPosition, before)
            fuzzyCompare(pointer(1).center.y, 300, 0.1)
            compare(pointing.resultPoints.length, 0)
        }

        function test_a_level_view_has_no_ground_to_point_at() {
            theCamera.position = Qt.vector3d(0, 0, -500)
            theCamera.upVector = Qt.vector3d(0, 1, 0)
            start(TwoSectionMode.oneSection)
            tap(300, 100)
            tap(300, 300)
            compare(pointing.state, "noPointerYet")
        }

        function test_it_keeps_what_aligns_the_plan() {
            const controller = Qt.createQmlObject("import com.torvik.view3d 1.0; BackgroundController {}", pointing)
            pointing.planController = controller
            compare(pointing.planController, controller)
            pointing.planController = null
            controller.destroy()
        }

        function isGreen(picture, x, y) {
            const scale = picture.width / window3d.width
            const colour = picture.pixel(x * scale, y * scale)
            return colour.g > 0.6 && colour.r < 0.5 && colour.b < 0.3
        }

        function test_the_first_segment_has_small_crosses_at_its_ends() {
            start(TwoSectionMode.twoSections)
            tap(150, 200)
            tap(450, 200)
            pointing.proceedToNextStep()
            let picture
            tryVerify(function() {
                picture = grabImage(window3d)
                return isGreen(picture, 150, 193)
            })
            for (const x of [150, 450]) {
                verify(isGreen(picture, x, 207))
                verify(!isGreen(picture, x, 188))
                verify(!isGreen(picture, x, 212))
            }
            verify(isGreen(picture, 143, 200))
            verify(!isGreen(picture, 138, 200))
            verify(isGreen(picture, 457, 200))
            verify(!isGreen(picture, 462, 200))
        }

        function test_the_segment_is_drawn_in_green() {
            start(TwoSectionMode.twoSections)
            tap(150, 200)
            tap(450, 200)
            tryVerify(function() { return isGreen(grabImage(window3d), 300, 200) })
            pointing.proceedToNextStep()
            tap(300, 300)
            tryVerify(function() { return isGreen(grabImage(window3d), 300, 200) })
        }

        function test_past_the_end_it_says_so() {
            start(TwoSectionMode.twoSections)
            host.expectLog("Internal error: TwoSectionInterface: Trying to move to the not existing state. "
                           + "Current index: 7 state number: 7")
            pointing.goToState(7)
            compare(pointing.state, "noPointerYet")
        }

        function test_it_ends_with_its_pointer_in_the_middle_and_can_begin_again() {
            start(TwoSectionMode.oneSection)
            tap(100, 300)
            pointing.finish()
            compare(ends.count, 1)
            fuzzyCompare(pointer(1).center.x, 300, 0.1)
            fuzzyCompare(pointer(1).center.y, 200, 0.1)
            compareVectors(pointer(1).savedWorldPosition, ground(300, 200))
            start(TwoSectionMode.oneSection)
            compare(pointing.state, "noPointerYet")
        }
    }
}
