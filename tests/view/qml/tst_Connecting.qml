import QtQuick 2.12
import QtTest 1.12

/** Two selected objects are connected, and that is applied or taken back: by the row's buttons, on a real network. */
Item {
    id: root

    width: 900
    height: 600

    ViewTestCase {
        name: "Connecting"
        frame: root

        property real before

        /** A pipe and the manhole ahead of it are selected. */
        function selectBoth() {
            const guids = host.openPipeAndManhole()
            compare(guids.length, 2)
            scene.sceneRoot.maxSelection = 2
            scene.sceneRoot.selectNextByDomainGuid(guids[0])
            scene.sceneRoot.selectNextByDomainGuid(guids[1])
            compare(scene.sceneRoot.selectionsCount, 2)
            before = host.pipeLength()
        }

        function connectBoth(hand) {
            selectBoth()
            verify(!child("pipeConnectButton").visible)
            GlobalNav.connectionMode = true
            verify(child("pipeConnectButton").visible)
            tryVerify(function() { return child("pipeConnectButton").x > child("floorButton3").x })
            tap(child("pipeConnectButton"), hand)
            verify(view.connectedState)
            verify(host.pipeLength() > before + 5)
            // The row is laid out with the next frame.
            tryVerify(function() { return child("pipeConnectCancel").x > child("pipeConnectApply").x })
        }

        function test_applied_it_stays_data() {
            return [{ "tag": "mouse" }, { "tag": "touch" }]
        }

        function test_applied_it_stays(data) {
            connectBoth(data.tag)
            tap(child("pipeConnectApply"), data.tag)
            verify(!view.connectedState)
            compare(scene.sceneRoot.selectionsCount, 0)
            // Applied, there is nothing left to be taken back.
            scene.sceneRoot.connectCancel()
            verify(host.pipeLength() > before + 5)
        }

        function test_cancelled_all_is_as_before_data() {
            return [{ "tag": "mouse" }, { "tag": "touch" }]
        }

        function test_cancelled_all_is_as_before(data) {
            connectBoth(data.tag)
            tap(child("pipeConnectCancel"), data.tag)
            verify(!view.connectedState)
            compare(scene.sceneRoot.selectionsCount, 0)
            fuzzyCompare(host.pipeLength(), before, 0.02)
        }

        function test_split_view_cancels_it_data() {
            return [{ "tag": "entered", "split": true }, { "tag": "left", "split": false }]
        }

        function test_split_view_cancels_it(data) {
            view.splitViewMode = !data.split
            selectBoth()
            scene.sceneRoot.connectSelectedObjects()
            verify(host.pipeLength() > before + 5)
            view.switchMode(view.mode3dTypes.rotate)
            view.splitViewMode = data.split
            fuzzyCompare(host.pipeLength(), before, 0.02)
            compare(scene.sceneRoot.selectionsCount, 0)
            compare(view.mode3dType, view.mode3dTypes.translate)
        }

        function test_in_split_view_nothing_is_offered() {
            selectBoth()
            view.connectedState = true
            view.beforeSplitViewModeChanged()
            verify(!view.connectedState)
            view.splitViewMode = true
            GlobalNav.connectionMode = true
            view.connectedState = true
            for (const name of ["pipeConnectButton", "pipeConnectApply", "pipeConnectCancel"])
                verify(!child(name).visible, name)
        }
    }
}
