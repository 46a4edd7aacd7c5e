import QtQuick 2.12
import QtTest 1.12
import Torvik.Geo 1.0 as TorvikGeo
import com.torvik.view3d 1.0 as Torvik3d

/** The view's controls in windows of all widths, alone and beside another half, by mouse and by touch. */
Item {
    id: root

    width: 900
    height: 600

    SignalSpy { id: screens; target: screenManager; signalName: "screenRequested" }

    ViewTestCase {
        id: testCase

        name: "Controls"
        frame: root

        readonly property var touchable: ["compassButton", "floorsInputScreenButton", "floorButton0", "floorButton1",
            "floorButton2", "floorButton3", "pipeConnectApply", "pipeConnectCancel", "zoomInButton", "zoomOutButton",
            "commandButton_toggleSplitView", "controlTypeModeButton"]

        function rectangle(item) {
            const corner = item.mapToItem(view, 0, 0)
            return { "x": corner.x, "y": corner.y, "right": corner.x + item.width, "bottom": corner.y + item.height }
        }

        function overlap(a, b) {
            return a.x < b.right && b.x < a.right && a.y < b.bottom && b.y < a.bottom
        }

        function isInside(place) {
            return place.x >= 0 && place.y >= 0 && place.right <= view.width && place.bottom <= view.height
        }

        function shown(names) {
            return names.filter(function(name) { return child(name).visible })
        }

        /** What is wrong with the places of those controls, in words. */
        function faults(names) {
            const found = []
            const places = shown(names).map(function(name) {
                const place = rectangle(child(name))
                if (!isInside(place))
                    found.push(name + " is not inside")
                if (place.right - place.x < 40 || place.bottom - place.y < 40)
                    found.push(name + " is too small for a finger")
                return { "name": name, "place": place }
            })
            for (let i = 0; i < places.length; ++i) {
                for (let k = 0; k < i; ++k) {
                    if (overlap(places[i].place, places[k].place))
                        found.push(places[i].name + " lies on " + places[k].name)
                }
            }
            return found.join(", ")
        }

        function look(width, height) {
            root.width = width
            root.height = height
            tryCompare(scene, "width", width)
        }

        function test_all_controls_have_room_data() {
            const rows = []
            for (const width of [320, 360, 400, 420, 421, 480, 600, 768, 1024, 1280, 1920, 2560, 3840]) {
                for (const split of [false, true])
                    rows.push({ "tag": width + (split ? " split" : " full"), "width": width, "split": split })
            }
            return rows
        }

        function test_all_controls_have_room(data) {
            look(data.width, data.width > 1280 ? 1080 : 480)
            view.splitViewMode = data.split
            for (const frame of [false, true]) {
                for (const connected of [false, true]) {
                    view.photoAreaDashedRectangleVisible = frame
                    view.connectedState = connected
                    tryVerify(function() { return faults(touchable) === "" }, 1000, faults(touchable))
                }
            }
            const names = shown(touchable)
            verify(names.indexOf("zoomInButton") >= 0)
            verify(names.indexOf("commandButton_toggleSplitView") >= 0)
            compare(names.indexOf("compassButton") >= 0, data.width > 420)
            compare(names.indexOf("floorButton3") >= 0, !data.split)
            compare(names.indexOf("pipeConnectCancel") >= 0, !data.split)
        }

        function test_a_wide_view_has_them_in_one_row() {
            look(900, 600)
            const compass = rectangle(child("compassButton"))
            const row = ["floorsInputScreenButton", "floorButton0", "floorButton1", "floorButton2", "floorButton3"]
            const places = row.map(function(name) { return rectangle(child(name)) })
            compare(places[0].x, compass.right + 10)
            for (let i = 0; i < places.length; ++i) {
                compare(places[i].y, 0)
                compare(places[i].bottom, 40)
                if (i > 0)
                    compare(places[i].x, places[i - 1].right + 8)
            }
        }

        function test_warnings_can_be_read_and_sent_away_data() {
            return [320, 421, 900, 1280, 3840].map(function(width) { return { "tag": String(width), "width": width } })
        }

        function test_warnings_can_be_read_and_sent_away(data) {
            look(data.width, 600)
            screens.clear()
            const far = child("cameraDistanceInfoPanel")
            const invalid = child("locationValidInfoPanel")
            verify(!far.visible && !invalid.visible)
            verify(child("controlRow").visible)

            scene.camera.setPose(Qt.vector3d(0, 12000, 0), Qt.vector3d(0, 0, 0), Qt.vector3d(0, 0, 1))
            verify(far.visible)
            compare(rectangle(far).right, data.width)
            compare(rectangle(far).x, data.width > 420 ? 64 : 0)
            const text = find(far, "message")
            tryVerify(function() { return isInside(rectangle(text)) && !overlap(rectangle(text), rectangle(child("zoomInButton"))) })
            mouseClick(far, 20, 10)
            verify(!far.visible)
            compare(screens.count, 0)

            TorvikGeo.GeoProjector.locationWithinProjectionRegion(false)
            verify(invalid.visible)
            verify(!child("controlRow").visible)
            const box = find(invalid, "box")
            compare(box.width, Math.min(1120, data.width - 128))
            tryVerify(function() { return isInside(rectangle(box)) })
            // In one of 40 pixels two lines reach a pixel beyond.
            verify(rectangle(find(invalid, "message")).bottom <= rectangle(box).bottom + 1)
            verify(!overlap(rectangle(box), rectangle(child("zoomInButton"))))
            mouseClick(box)
            verify(!invalid.visible)
            verify(child("controlRow").visible)
        }

        function test_the_diagnoses_lie_on_no_control() {
            child("debugButtonsRow").visible = true
            for (const width of [421, 900]) {
                look(width, 600)
                tryVerify(function() { return faults(touchable) === "" })
                const row = rectangle(child("debugButtonsRow"))
                compare(row.x, 64)
                for (const name of shown(touchable))
                    verify(!overlap(row, rectangle(child(name))), name)
            }
        }

        function test_every_control_answers_data() {
            const rows = []
            for (const width of [421, 900, 3840]) {
                for (const hand of ["mouse", "touch"])
                    rows.push({ "tag": width + " by " + hand, "width": width, "hand": hand })
            }
            return rows
        }

        function test_every_control_answers(data) {
            look(data.width, 600)
            tryVerify(function() { return faults(touchable) === "" })
            screens.clear()
            tap(child("floorsInputScreenButton"), data.hand)
            compare(screens.count, 1)
            for (let floor = 0; floor < 4; ++floor) {
                tap(child("floorButton" + floor), data.hand)
                compare(FloorNav.current, floor)
            }
            tap(child("floorButton3"), data.hand)
            compare(FloorNav.current, -1)

            const mode = child("controlTypeModeButton")
            tap(mode, data.hand)
            compare(view.mode3dType, view.mode3dTypes.rotate)
            tap(mode, data.hand)
            compare(view.mode3dType, view.mode3dTypes.translate)

            let asked = 0
            view.toggleSplitViewCallback = function() { asked++ }
            tap(child("commandButton_toggleSplitView"), data.hand)
            compare(asked, 1)

            view.connectedState = true
            tryVerify(function() { return faults(touchable) === "" })
            tap(child("pipeConnectApply"), data.hand)
            compare(view.connectedState, false)
            view.connectedState = true
            tryVerify(function() { return faults(touchable) === "" })
            tap(child("pipeConnectCancel"), data.hand)
            compare(view.connectedState, false)

            scene.camera.setPose(Qt.vector3d(0, 300, 0), Qt.vector3d(0, 0, 0), Qt.vector3d(1, 0, 0))
            fuzzyCompare(view.compass.rotation, 90, 0.01)
            tap(child("compassButton"), data.hand)
            scene.camera.animScheduler.completeAll()
            fuzzyCompare(view.compass.rotation, 0, 0.01)
        }

        function test_the_zoom_handles_answer_data() {
            return [{ "tag": "mouse" }, { "tag": "touch" }]
        }

        function test_the_zoom_handles_answer(data) {
            for (const width of [320, 3840]) {
                look(width, 600)
                scene.camera.setPose(Qt.vector3d(0, 300, 0), Qt.vector3d(0, 0, 0), Qt.vector3d(0, 0, 1))
                drag(child("zoomInButton"), 0, 35, data.tag)
                const near = scene.camera.viewVectorLength
                fuzzyCompare(near, 300 * Math.pow(0.98, 35), 1)
                drag(child("zoomOutButton"), -20, 0, data.tag)
                fuzzyCompare(scene.camera.viewVectorLength, near * Math.pow(1.02, 20), 1)
            }
        }

        function test_the_passed_lateral_answers_data() {
            return [{ "tag": "mouse" }, { "tag": "touch" }]
        }

        function test_the_passed_lateral_answers(data) {
            host.setActiveInspection(true)
            scene.camera.viewType = Torvik3d.CameraController.View3d
            scene.camera.setPose(Qt.vector3d(0, 150, 0), Qt.vector3d(0, 0, 0), Qt.vector3d(0, 0, 1))
            GlobalNav.lateralInProximity(belmora.appStateData.activeInspection, null)
            const button = child("lateralQuickAccess")
            verify(button.visible)
            verify(button.height >= 40)
            screens.clear()
            tap(button, data.tag)
            compare(screens.count, 1)
            compare(screens.signalArguments[0][0], "ProjectOverview::ProjectOverviewScreen")
        }
    }
}
