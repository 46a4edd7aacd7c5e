import QtQuick 2.12
import QtTest 1.12

import "qrc:/qml/view3d"

/** The commands that go to parts of the inspection. */
Item {
    id: window3d

    property bool splitViewMode: false

    GoToCamera { id: goToCamera }
    GoToSection { id: goToSection }
    GoToNodeUpStream { id: goToUpstream }
    GoToNodeDownStream { id: goToDownstream }

    SignalSpy { id: endOfSection; target: goToSection; signalName: "runningChanged" }

    TestCase {
        name: "GoToCommands"

        function cleanup() {
            window3d.splitViewMode = false
            GlobalNav.cameraFollow = false
            host.setActiveInspection(false)
        }

        function test_their_texts() {
            compare(goToCamera.text, "Go-To\nCamera")
            compare(goToSection.text, "Go-To\nSection")
            compare(goToUpstream.text, "Go-To\nNode\nUpstream")
            compare(goToDownstream.text, "Go-To\nNode\ndownstream")
        }

        function test_their_icons() {
            const icons = [[goToCamera, design.icons.button3DGotoCamera], [goToSection, design.icons.button3DGoToSection],
                           [goToUpstream, design.icons.button3DGoToNodeUpstream],
                           [goToDownstream, design.icons.button3DGoToNodeDownstream]]
            const seen = []
            for (const pair of icons) {
                compare(pair[0].icon.enabled, pair[1].enabled)
                compare(pair[0].icon.active, pair[1].active)
                seen.push(String(pair[1].enabled))
            }
            compare(seen.filter(function(icon, i) { return seen.indexOf(icon) === i }).length, 4)
        }

        function test_the_camera_is_followed_and_let_go() {
            verify(!goToCamera.active)
            goToCamera.trigger()
            verify(GlobalNav.cameraFollow)
            verify(goToCamera.active)
            verify(!goToCamera.running)
            goToCamera.trigger()
            verify(!GlobalNav.cameraFollow)
            verify(!goToCamera.active)
        }

        function test_in_split_view_the_camera_command_rests() {
            verify(goToCamera.enabled)
            window3d.splitViewMode = true
            verify(!goToCamera.enabled)
            goToCamera.trigger()
            verify(!GlobalNav.cameraFollow)
        }

        function test_without_an_inspection_there_is_nowhere_to_go() {
            for (const command of [goToSection, goToUpstream, goToDownstream])
                verify(!command.enabled)
            host.setActiveInspection(true)
            for (const command of [goToSection, goToUpstream, goToDownstream])
                verify(command.enabled)
        }

        function test_the_others_act_once() {
            host.setActiveInspection(true)
            for (const command of [goToSection, goToUpstream, goToDownstream]) {
                verify(!command.active)
                endOfSection.clear()
                endOfSection.target = command
                command.trigger()
                compare(endOfSection.count, 2)
                verify(!command.running)
                verify(!command.active)
            }
        }
    }
}
