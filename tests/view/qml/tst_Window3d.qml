import QtQuick 2.12
import QtTest 1.12
import Torvik.Geo 1.0 as TorvikGeo
import com.torvik.view3d 1.0 as Torvik3d

/** The view as a host embeds it. */
Item {
    id: root

    width: 900
    height: 600

    SignalSpy { id: screens; target: screenManager; signalName: "screenRequested" }

    ViewTestCase {
        name: "Window3d"
        frame: root

        function countOf(item, name) {
            let count = item.objectName === name ? 1 : 0
            for (let i = 0; i < item.children.length; ++i)
                count += countOf(item.children[i], name)
            return count
        }

        function test_it_stands_before_its_scene() {
            const early = createTemporaryObject(windowComponent, root)
            compare(early.scene3d, undefined)
            compare(early.map, undefined)
            compare(early.compass, undefined)
            compare(early.cameraController, undefined)
            compare(early.cameraNorthRotation, 0.0)
            verify(!early.mode3d)
            verify(early.isOnMain3DScreen())
            verify(early.sceneLoader.asynchronous)
            tryVerify(function() { return !!early.compass }, 10000)
            verify(early.mode3d)
            verify(early.cameraController)
            tryVerify(function() { return !!early.sceneLoader.item })
            compare(early.screenShootArea, early.sceneLoader.item)
        }

        function test_defaults() {
            const fresh = { "disableModeTypeSwitch": false, "rotationTranslationButtonEnabled": true,
                "photoAreaDashedRectangleVisible": false, "mapVisible": true, "obsVisible": true,
                "labelsVisible": true, "manholeFullInfoVisible": false, "screenshotPending": false, "cameraFOV": 3,
                "gridVisible": true, "gridDisabled": false, "gridIsFarAwayFromCamera": false,
                "gridVisibilityLimit": 3500, "connectedState": false, "splitViewMode": false,
                "rotationIsTurnedOn": false }
            for (const name in fresh)
                compare(view[name], fresh[name], name)
            compare(view.mode3dType, view.mode3dTypes.translate)
            compare(view.floorModel.length, 0)
            compare(view.screenPointer, undefined)
        }

        function test_far_away_the_grid_gives_way() {
            for (const wanted of [true, false]) {
                view.mapWanted = wanted
                scene.camera.setPose(Qt.vector3d(0, 3501, 0), Qt.vector3d(0, 0, 0), Qt.vector3d(0, 0, 1))
                verify(view.gridIsFarAwayFromCamera, wanted)
                scene.camera.setPose(Qt.vector3d(0, 3499, 0), Qt.vector3d(0, 0, 0), Qt.vector3d(0, 0, 1))
                verify(!view.gridIsFarAwayFromCamera, wanted)
            }
        }

        function test_modes() {
            const modes = Torvik3d.CameraController
            compare(view.mode3dTypes.none, modes.None)
            compare(view.mode3dTypes.rotate, modes.Rotate)
            compare(view.mode3dTypes.translate, modes.Translate)
            compare(view.mode3dTypes.tilt, modes.Tilt)
            compare(view.mode3dTypes.zoom, modes.Zoom)
        }

        function test_in_2d_there_is_no_zoom_or_tilt_mode() {
            view.switchMode(view.mode3dTypes.zoom)
            compare(view.mode3dType, view.mode3dTypes.zoom)
            view.switchMode(view.mode3dTypes.rotate)
            scene.mode3d = false
            view.switchMode(view.mode3dTypes.zoom)
            compare(view.mode3dType, view.mode3dTypes.rotate)
            view.switchMode(view.mode3dTypes.tilt)
            compare(view.mode3dType, view.mode3dTypes.rotate)
            view.switchMode(view.mode3dTypes.translate)
            compare(view.mode3dType, view.mode3dTypes.translate)
        }

        function test_the_flags_reach_the_navigation() {
            for (const name of ["obsVisible", "labelsVisible", "manholeFullInfoVisible"]) {
                const before = view[name]
                compare(GlobalNav[name], before)
                view[name] = !before
                compare(GlobalNav[name], !before)
                view[name] = before
            }
        }

        function test_map_and_grid_are_switched() {
            compare(view.toggleMap(), false)
            compare(view.mapVisible, false)
            compare(view.toggleMap(), true)
            compare(view.toggleGrid(), false)
            compare(view.gridVisible, false)
            compare(view.toggleGrid(), true)
        }

        function test_the_scene_is_seen_through_over_the_map() {
            compare(view.sceneTransparency, view.map.shown ? 0 : 1)
            view.mapVisible = false
            tryCompare(view.map, "shown", false)
            compare(view.sceneTransparency, 1)
        }

        function test_a_host_can_do_without_a_map() {
            view.mapWanted = false
            compare(view.map, undefined)
            compare(view.sceneTransparency, 1)
            compare(view.toggleMap(), false)
            view.gotoAddress("Celle")
            view.gotoPosition(undefined)
        }

        function test_rotation_and_zoom_state() {
            view.calculateRotationState(view.mode3dTypes.rotate)
            compare(view.rotationIsTurnedOn, true)
            view.calculateRotationState(view.mode3dTypes.tilt)
            compare(view.rotationIsTurnedOn, true)
            view.zoomButtonAction({ "state": "normal" })
            compare(view.mode3dType, view.mode3dTypes.zoom)
            view.zoomButtonAction({ "state": "modeSet" })
            compare(view.mode3dType, view.mode3dTypes.rotate)
            view.calculateRotationState(view.mode3dTypes.translate)
            compare(view.rotationIsTurnedOn, false)
            view.zoomButtonAction({ "state": "modeSet" })
            compare(view.mode3dType, view.mode3dTypes.translate)
        }

        function test_a_narrow_view_has_no_compass_and_no_mode_button() {
            root.width = 420
            verify(!view.pipeViewBiggerThan40Percentage())
            verify(!child("compassButton").visible)
            verify(!child("controlTypeModeButton").visible)
            // What is not there cannot be clicked.
            const far = findChild(child("cameraDistanceInfoPanel"), "message")
            verify(far.text.length > 0 && !far.text.includes("compass"))
            root.width = 421
            verify(far.text.includes("compass"))
            verify(child("compassButton").visible)
            verify(child("controlTypeModeButton").visible)
            view.disableModeTypeSwitch = true
            verify(!child("controlTypeModeButton").visible)
            view.disableModeTypeSwitch = false
            view.rotationTranslationButtonEnabled = false
            verify(!child("controlTypeModeButton").visible)
        }

        function test_the_mode_button_goes_between_moving_and_turning() {
            const button = child("controlTypeModeButton").item
            compare(button.modeButtonMode, view.mode3dTypes.translate)
            mouseClick(button)
            compare(view.mode3dType, view.mode3dTypes.rotate)
            mouseClick(button)
            compare(view.mode3dType, view.mode3dTypes.translate)
            compare(child("controlTypeModeButton").isRotationMode, false)
        }

        function test_split_view_is_the_hosts() {
            let asked = 0
            view.toggleSplitViewCallback = function() { asked++ }
            const button = child("commandButton_toggleSplitView")
            compare(button.state, "modeSet")
            mouseClick(button)
            compare(asked, 1)
            view.splitViewMode = true
            compare(button.state, "normal")
            host.setPage("Screens::Another")
            verify(!view.isOnMain3DScreen())
            verify(!button.visible)
        }

        function test_leaving_for_split_view_ends_what_was_begun() {
            view.switchMode(view.mode3dTypes.rotate)
            view.connectedState = true
            scene.camera.setPose(Qt.vector3d(3, 300, 4), Qt.vector3d(3, 0, 4), Qt.vector3d(0, 0, 1))
            view.beforeSplitViewModeChanged()
            compare(view.connectedState, false)
            compare(scene.camera.lastPositionFullView, Qt.vector3d(3, 300, 4))
            view.splitViewMode = true
            compare(view.mode3dType, view.mode3dTypes.translate)
            verify(!child("floorsInputScreenButton").visible)
            view.connectedState = true
            scene.camera.setPose(Qt.vector3d(0, 200, 0), Qt.vector3d(0, 0, 0), Qt.vector3d(0, 0, 1))
            view.switchMode(view.mode3dTypes.rotate)
            view.beforeSplitViewModeChanged()
            compare(view.connectedState, true)
            compare(scene.camera.lastPositionFullView, Qt.vector3d(3, 300, 4))
            view.splitViewMode = false
            compare(view.mode3dType, view.mode3dTypes.translate)
        }

        function test_addresses_and_places_are_the_maps() {
            const asked = []
            view.map = {
                "gotoAddress": function(address) { asked.push(address) },
                "gotoPosition": function(place) { asked.push(place) }
            }
            view.gotoAddress("Celle")
            view.gotoPosition("there")
            compare(asked, ["Celle", "there"])
        }

        function test_the_mode_button_ends_the_demonstration() {
            scene.switchDemo()
            const before = scene.camera.upVector.x
            tryVerify(function() { return scene.camera.upVector.x !== before })
            mouseClick(child("controlTypeModeButton").item)
            const up = scene.camera.upVector.x
            wait(100)
            compare(scene.camera.upVector.x, up)
        }

        function test_the_mode_button_stands_for_the_mode_when_the_view_changes() {
            const button = child("controlTypeModeButton").item
            view.switchMode(view.mode3dTypes.rotate)
            scene.mode3d = false
            compare(button.modeButtonMode, view.mode3dTypes.rotate)
            view.switchMode(view.mode3dTypes.translate)
            scene.mode3d = true
            compare(button.modeButtonMode, view.mode3dTypes.translate)
        }

        function test_a_host_may_begin_in_split_view() {
            const early = createTemporaryObject(windowComponent, root, { "splitViewMode": true })
            early.switchMode(early.mode3dTypes.rotate)
            early.beforeSplitViewModeChanged()
            early.splitViewMode = false
            early.beforeSplitViewModeChanged()
            compare(early.mode3dType, early.mode3dTypes.translate)
            tryVerify(function() { return !!early.compass }, 10000)
        }

        function test_floors_are_asked_for() {
            screens.clear()
            mouseClick(child("floorsInputScreenButton"))
            compare(screens.count, 1)
            compare(screens.signalArguments[0][0], "View3d::FloorsInputScreen")
            const args = screens.signalArguments[0][1]
            compare(args.inputMethodHints, Qt.ImhSensitiveData | Qt.ImhPreferLowercase | Qt.ImhNoPredictiveText)
            compare(args.model, [
                { "rowId": 0, "labelText": "Floor 1", "inputText": 0 },
                { "rowId": 1, "labelText": "Floor 2", "inputText": 3 },
                { "rowId": 2, "labelText": "Floor 3", "inputText": 3 },
                { "rowId": 3, "labelText": "Floor 4", "inputText": 3 }
            ])
            args.screenCallback(undefined)
            compare(view.floorModel.length, 0)
            args.screenCallback({ "floorsModel": [0, 2.5] })
            compare(view.floorModel, [0, 2.5])
            compare(FloorNav.floorValues, [0, 2.5])
            compare(countOf(view, "floorLine"), 2)
        }

        function test_a_floor_is_shown_and_taken_off() {
            const second = child("floorButton1")
            compare(second.text, "2")
            mouseClick(second)
            compare(FloorNav.current, 1)
            compare(second.border.width, 2.5)
            compare(child("floorButton0").border.width, 0)
            mouseClick(child("floorButton3"))
            compare(FloorNav.current, 3)
            mouseClick(child("floorButton3"))
            compare(FloorNav.current, -1)
        }

        function test_connecting_is_offered_with_two_selected() {
            verify(!child("pipeConnectButton").visible)
            verify(!child("pipeConnectApply").visible)
            view.connectedState = true
            verify(child("pipeConnectApply").visible)
            verify(child("pipeConnectCancel").visible)
            mouseClick(child("pipeConnectApply"))
            compare(view.connectedState, false)
            view.connectedState = true
            mouseClick(child("pipeConnectCancel"))
            compare(view.connectedState, false)
        }

        function test_the_compass_turns_with_the_view_data() {
            return [
                { "tag": "north", "up": Qt.vector3d(0, 0, 1), "rotation": 0 },
                { "tag": "west", "up": Qt.vector3d(1, 0, 0), "rotation": 90 },
                { "tag": "east", "up": Qt.vector3d(-1, 0, 0), "rotation": -90 },
                { "tag": "south", "up": Qt.vector3d(0, 0, -1), "rotation": 180 }
            ]
        }

        function test_the_compass_turns_with_the_view(data) {
            scene.camera.setPose(Qt.vector3d(0, 300, 0), Qt.vector3d(0, 0, 0), data.up)
            fuzzyCompare(view.compass.rotation, data.rotation, 0.01)
            compare(view.cameraNorthRotation, view.compass.rotation)
        }

        function test_a_tap_on_the_compass_takes_the_view_back() {
            scene.camera.setPose(Qt.vector3d(0, 300, 0), Qt.vector3d(0, 0, 0), Qt.vector3d(1, 0, 0))
            mouseClick(child("compassButton"))
            scene.camera.animScheduler.completeAll()
            tryVerify(function() { return Math.abs(view.compass.rotation) < 0.01 })
        }

        function test_holding_the_compass_shows_the_diagnoses() {
            const row = child("debugButtonsRow")
            verify(!row.visible)
            scene.camera.setPose(Qt.vector3d(0, 300, 0), Qt.vector3d(0, 0, 0), Qt.vector3d(1, 0, 0))
            mousePress(child("compassButton"))
            wait(3500)
            verify(!row.visible)
            tryVerify(function() { return row.visible }, 2000)
            mouseRelease(child("compassButton"))
            // It was no click: the view stays.
            verify(!scene.camera.animationsRunning)
            fuzzyCompare(view.compass.rotation, 90, 0.01)
            const button = row.children[0]
            compare(button.caption, "camera\nprops")
            compare(button.width, 64)
            compare(button.height, 32)
            host.expectLog("camera\nprops")
            host.expectLog("# camera pos " + scene.camera.position)
            host.expectLog("# camera vc " + scene.camera.viewCenter)
            host.expectLog("# camera up " + scene.camera.upVector)
            mouseClick(button)
        }

        function test_the_photos_frame() {
            const frame = child("photoAreaDashedRectangle")
            verify(!frame.visible)
            view.photoAreaDashedRectangleVisible = true
            verify(frame.visible)
            compare(frame.height, scene.height)
            fuzzyCompare(frame.width, 1.072 * scene.height, 1e-6)
            fuzzyCompare(child("compassButton").x, frame.x, 1e-6)
        }

        function test_the_lateral_that_is_passed() {
            const button = child("lateralQuickAccess")
            compare(button.opacity, 0.7)
            verify(!button.visible)
            host.setActiveInspection(true)
            scene.camera.viewType = Torvik3d.CameraController.View3d
            scene.camera.setPose(Qt.vector3d(0, 150, 0), Qt.vector3d(0, 0, 0), Qt.vector3d(0, 0, 1))
            GlobalNav.lateralInProximity(belmora.appStateData.activeInspection, null)
            verify(button.visible)
            compare(button.text, belmora.appStateData.activeInspection.queryName())
            scene.camera.viewType = Torvik3d.CameraController.View2dTop
            verify(!button.visible)
            view.splitViewMode = true
            verify(button.visible)
            scene.camera.setPose(Qt.vector3d(0, 201, 0), Qt.vector3d(0, 0, 0), Qt.vector3d(0, 0, 1))
            verify(!button.visible)
            scene.camera.setPose(Qt.vector3d(0, 150, 0), Qt.vector3d(0, 0, 0), Qt.vector3d(0, 0, 1))
            GlobalNav.lateralNotInProximity()
            verify(!button.visible)
            compare(button.text, "")
            compare(button.selectedLateral, null)
        }

        function test_the_lateral_that_is_passed_goes_with_the_inspection() {
            const button = child("lateralQuickAccess")
            // What else hides the button: a project that closes takes the camera away.
            function lookFromNearby() {
                scene.camera.viewType = Torvik3d.CameraController.View3d
                scene.camera.setPose(Qt.vector3d(0, 150, 0), Qt.vector3d(0, 0, 0), Qt.vector3d(0, 0, 1))
            }
            host.setActiveInspection(true)
            lookFromNearby()
            GlobalNav.lateralInProximity(belmora.appStateData.activeInspection, null)
            verify(button.visible)

            host.setActiveInspection(false)
            lookFromNearby()
            verify(!button.visible)
            // For the end of a video that is still to come.
            verify(!!button.selectedLateral)

            host.setActiveInspection(true)
            lookFromNearby()
            verify(!button.visible)
            GlobalNav.lateralNotInProximity()
        }

        function test_pointing_is_switched_on_and_off() {
            verify(!view.twoSectionInterface.enabled)
            view.toggleTwoSectionInterface(4)
            verify(view.twoSectionInterface.enabled)
            verify(!scene.sceneRoot.selectionsEnabled)
            compare(view.twoSectionInterface.oprationMode, 4)
            view.toggleTwoSectionInterface(1)
            verify(!view.twoSectionInterface.enabled)
            compare(view.twoSectionInterface.oprationMode, 1)
            verify(scene.sceneRoot.selectionsEnabled)
        }

        function test_the_zoom_handles_have_their_icons() {
            const zoomIn = child("zoomInButton")
            compare(zoomIn.item.iconActive, design.icons.button3DZoomPlusPipeViewscreen.active)
            compare(zoomIn.item.iconInactive, design.icons.button3DZoomPlusPipeViewscreen.enabled)
            verify(zoomIn.item.zoomIn)
            verify(!child("zoomOutButton").item.zoomIn)
            compare(zoomIn.z, view.z + 1)
            compare(zoomIn.x + zoomIn.width, view.width)
            compare(child("zoomOutButton").y + child("zoomOutButton").height, view.height)
        }

        function test_no_warning_stands_in_a_picture() {
            TorvikGeo.GeoProjector.locationWithinProjectionRegion(false)
            scene.camera.setPose(Qt.vector3d(0, 12000, 0), Qt.vector3d(0, 0, 0), Qt.vector3d(0, 0, 1))
            child("debugButtonsRow").visible = true
            const warnings = child("debugButtonsRow").parent
            verify(warnings.visible)
            view.controlsVisible = false
            for (let i = 0; i < warnings.children.length; ++i)
                verify(!warnings.children[i].visible)
        }

        function test_what_lies_over_the_scene_is_not_in_a_photo() {
            const over = [view.twoSectionInterface, child("gridScaleInfo"), child("floorSet")]
            for (const item of over)
                compare(item.opacity, 1)
            view.screenshotPending = true
            for (const item of over)
                compare(item.opacity, 0)
        }

        function test_another_project_ends_a_connection() {
            view.connectedState = true
            host.setActiveInspection(true)
            compare(view.connectedState, false)
        }

        function test_a_camera_that_stands_nowhere_is_told() {
            const before = view.compass.rotation
            host.expectError("# Camera has wrong state!")
            scene.camera.upVector = Qt.vector3d(NaN, 0, 0)
            compare(view.compass.rotation, before)
            scene.camera.upVector = Qt.vector3d(0, 0, 1)
            compare(view.compass.rotation, 0)
        }

        function test_without_controls_it_is_the_scene_alone() {
            view.controlsVisible = false
            for (const name of ["compassButton", "controlRow", "zoomInButton", "zoomOutButton", "view3dMenu",
                                "view3dLeftPanel"])
                verify(!child(name).visible, name)
            view.controlsVisible = true
            verify(child("compassButton").visible)
        }

        function test_the_left_panel() {
            const panel = child("view3dLeftPanel")
            compare(panel.z, 99999)
            verify(Qt.colorEqual(panel.color, "transparent"))
            find(panel, "axisLockXZ").parent.enabled = true
            verify(Qt.colorEqual(panel.color, Qt.rgba(0.7, 0.7, 0.7, 0.4)))
            compare(panel.height, 50)
        }
    }
}
