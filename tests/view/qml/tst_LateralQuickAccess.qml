import QtQuick 2.12
import QtTest 1.12
import Torvik.Application 1.0
import ostel.controls 1.0

import "qrc:/qml/view3d"

/** The way from an inspection to the lateral that the vehicle passes, and the buttons of a node's modes. */
Item {
    id: window3d

    property int mode3dType: 0

    width: 300
    height: 200

    LateralQuickAccessButton {
        id: button

        text: "L1"
    }

    NodeEditModesButtons {
        id: modes

        y: 60
    }

    SignalSpy { id: screens; target: screenManager; signalName: "screenRequested" }
    SignalSpy { id: stops; target: belmora.videoRecorder; signalName: "stopRequested" }

    TestCase {
        name: "LateralQuickAccess"
        when: windowShown

        function init() {
            host.setActiveInspection(true)
            GlobalNav.setRealTimeEnabled(true)
            button.visible = true
            host.setActiveStructure()
            button.selectedLateral = belmora.appStateData.activeStructure
            screens.clear()
            stops.clear()
        }

        function cleanup() {
            while (MessageBox.boxes.length > 0)
                MessageBox.answer(false)
            belmora.videoCreationHandler.state = VideoCreationHandler.StateIdle
            button.isLateralQuickAccessRunning = false
            WaitingBox.hide()
            button.visible = false
            host.setActiveInspection(false)
        }

        function wasLeft() {
            return !belmora.appStateData.activeInspection.valid
        }

        function test_a_tap_leaves_for_the_lateral() {
            const id = button.selectedLateral.id()
            mouseClick(button)
            verify(wasLeft())
            verify(!GlobalNav.realTimeEnabled)
            compare(screens.count, 1)
            compare(screens.signalArguments[0][0], "ProjectOverview::ProjectOverviewScreen")
            const args = screens.signalArguments[0][1]
            compare(args.requestSelectedObject.id(), id)
            verify(args.projectObject.valid)
            compare(args.screenCallback, undefined)
            compare(stops.count, 0)
            compare(MessageBox.boxes.length, 0)
        }

        function test_without_a_lateral_a_tap_does_nothing() {
            button.selectedLateral = null
            mouseClick(button)
            verify(!wasLeft())
            compare(screens.count, 0)
        }

        function test_at_first_it_is_not_seen() {
            const fresh = Qt.createQmlObject('import QtQuick 2.12; import "qrc:/qml/view3d"; LateralQuickAccessButton {}', window3d)
            verify(!fresh.visible)
            verify(!fresh.isLateralQuickAccessRunning)
            fresh.destroy()
        }

        function test_during_a_recording_it_asks() {
            belmora.videoCreationHandler.state = VideoCreationHandler.StateRecording
            mouseClick(button)
            compare(MessageBox.boxes.length, 1)
            compare(MessageBox.boxes[0].kind, "question")
            compare(MessageBox.boxes[0].caption, "Confirmation required")
            compare(MessageBox.boxes[0].text, "A video recording is currently in progress - it will be stopped upon exit."
                    + "\n\nAre you sure you want to close the current inspection?")
            MessageBox.answer(false)
            verify(!wasLeft())
            verify(GlobalNav.realTimeEnabled)
            verify(!button.isLateralQuickAccessRunning)
            compare(stops.count, 0)
            compare(screens.count, 0)
            verify(!WaitingBox.shown)
        }

        function beginToLeaveRecording() {
            belmora.videoCreationHandler.state = VideoCreationHandler.StateRecording
            mouseClick(button)
            MessageBox.answer(true)
        }

        function test_after_a_yes_it_waits_for_the_video() {
            const atTheStop = []
            const look = function() {
                atTheStop.push(button.isLateralQuickAccessRunning, WaitingBox.shown, GlobalNav.realTimeEnabled, wasLeft())
            }
            belmora.videoRecorder.stopRequested.connect(look)
            beginToLeaveRecording()
            belmora.videoRecorder.stopRequested.disconnect(look)
            compare(atTheStop, [true, true, true, false])
            compare(stops.count, 1)
            verify(!GlobalNav.realTimeEnabled)
            verify(wasLeft())
            verify(WaitingBox.shown)
            verify(button.isLateralQuickAccessRunning)
            compare(screens.count, 0)

            belmora.videoCreationHandler.videoCreated()
            verify(!WaitingBox.shown)
            verify(!button.isLateralQuickAccessRunning)
            compare(screens.count, 1)
        }

        function test_a_video_that_failed_is_told() {
            beginToLeaveRecording()
            host.failVideo(0x1234)
            verify(!WaitingBox.shown)
            compare(MessageBox.boxes.length, 1)
            compare(MessageBox.boxes[0].kind, "error")
            compare(MessageBox.boxes[0].caption, "Error")
            verify(MessageBox.boxes[0].text.indexOf("1234") > 0)
            compare(screens.count, 1)
        }

        function test_videos_of_others_are_none_of_its_business() {
            belmora.videoCreationHandler.videoCreated()
            compare(screens.count, 0)
        }

        function test_a_nodes_modes() {
            verify(!modes.visible)
            verify(!modes.enabled)
            compare(modes.width, 40)
            compare(modes.height, 90)
            compare(modes.radius, 5)
            const move = findChild(modes, "btnTranslate")
            const turn = findChild(modes, "btnRotate")
            GlobalNav.translateMode = true
            compare(move.state, "clicked")
            compare(turn.state, "normal")
            turn.clickAction()
            verify(!GlobalNav.translateMode)
            compare(move.state, "normal")
            compare(turn.state, "clicked")
            move.clickAction()
            verify(GlobalNav.translateMode)
            compare(move.y, -6)
            compare(turn.y, move.y + 64 - 3)
        }

        function test_a_tap_changes_a_nodes_mode() {
            modes.visible = true
            modes.enabled = true
            const turn = findChild(modes, "btnRotate")
            GlobalNav.translateMode = true
            mouseClick(turn)
            verify(!GlobalNav.translateMode)
            compare(turn.state, "clicked")
            mouseClick(findChild(modes, "btnTranslate"))
            verify(GlobalNav.translateMode)
            modes.visible = false
            modes.enabled = false
        }
    }
}
