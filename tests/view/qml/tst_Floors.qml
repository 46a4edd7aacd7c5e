import Qt3D.Render 2.12
import QtQuick 2.12
import QtTest 1.12
import com.torvik.view3d 1.0 as Torvik3d

import "qrc:/qml/view3d"

/** The floors of a building in the front view. */
CameraWindow {
    id: window3d

    property Item scene3d: scene

    width: 600
    height: 400

    Item {
        id: scene

        property alias camera: theCamera
        property QtObject cameraHolder: Camera {
            id: theCamera

            property int viewType: Torvik3d.CameraController.View2dFront
            signal cameraProjectionChanged()

            fieldOfView: 3
            aspectRatio: 1.5
        }
    }

    FloorSet {
        id: floors
    }

    TestCase {
        name: "Floors"
        when: windowShown

        function init() {
            window3d.scene3d = scene
            window3d.width = 600
            window3d.height = 400
            theCamera.viewType = Torvik3d.CameraController.View2dFront
            theCamera.upVector = Qt.vector3d(0, 1, 0)
            theCamera.viewCenter = Qt.vector3d(0, 4, 0)
            theCamera.position = Qt.vector3d(0, 4, -300)
            floors.floorsModel = [0, 3, 3, 3]
        }

        function cleanup() {
            floors.floorsModel = []
        }

        function floor(number) {
            return floors.children[number]
        }

        function lineY(number) {
            return findChild(floor(number), "floorLine").y
        }

        function test_heights_add_up() {
            compare(floors.calculateY(0), 0)
            compare(floors.calculateY(3), 9)
            for (let i = 0; i < 4; ++i) {
                compare(floor(i).yPosition, 3 * i)
                compare(floor(i).point3D, Qt.vector3d(0, 3 * i, 0))
            }
        }

        function test_a_line_stands_at_its_height() {
            for (let i = 0; i < 4; ++i) {
                const expected = Utils3D.pointWorldToScreen(theCamera, Qt.vector3d(0, 3 * i, 0), 600, 400).y
                fuzzyCompare(lineY(i), expected, 0.01)
                verify(floor(i).visible)
            }
            verify(lineY(0) > lineY(3))
        }

        function test_lines_follow_the_camera() {
            const before = lineY(1)
            theCamera.viewCenter = Qt.vector3d(0, 6, 0)
            theCamera.position = Qt.vector3d(0, 6, -300)
            compare(lineY(1), before)
            theCamera.cameraProjectionChanged()
            fuzzyCompare(lineY(1), Utils3D.pointWorldToScreen(theCamera, Qt.vector3d(0, 3, 0), 600, 400).y, 0.01)
            verify(lineY(1) > before + 10)
        }

        function test_lines_follow_the_size_of_the_window() {
            theCamera.cameraProjectionChanged()
            const before = lineY(1)
            window3d.width = 900
            window3d.height = 600
            const expected = Utils3D.pointWorldToScreen(theCamera, Qt.vector3d(0, 3, 0), 900, 600).y
            verify(Math.abs(expected - before) > 50)
            fuzzyCompare(lineY(1), expected, 0.01)
            compare(findChild(floor(1), "floorLine").width, 900)
        }

        function test_lines_follow_their_height() {
            theCamera.cameraProjectionChanged()
            floor(1).point3D = Qt.vector3d(0, 5, 0)
            fuzzyCompare(lineY(1), Utils3D.pointWorldToScreen(theCamera, Qt.vector3d(0, 5, 0), 600, 400).y, 0.01)
        }

        function test_without_a_scene_there_are_no_lines() {
            window3d.scene3d = null
            verify(!floor(1).visible)
            window3d.scene3d = scene
            verify(floor(1).visible)
            fuzzyCompare(lineY(1), Utils3D.pointWorldToScreen(theCamera, Qt.vector3d(0, 3, 0), 600, 400).y, 0.01)
        }

        function test_only_the_front_view_has_floors() {
            verify(floor(1).visible)
            theCamera.viewType = Torvik3d.CameraController.View2dTop
            verify(!floor(1).visible)
            theCamera.viewType = Torvik3d.CameraController.View3d
            verify(!floor(1).visible)
        }

        function test_a_line_at_the_very_top_is_hidden() {
            floor(1).screenY = 0
            verify(!floor(1).visible)
            floor(1).screenY = undefined
            verify(!floor(1).visible)
            floor(1).screenY = 1
            verify(floor(1).visible)
        }

        function test_how_it_looks() {
            const line = findChild(floor(2), "floorLine")
            compare(line.width, 600)
            compare(line.height, 3)
            compare(line.opacity, 0.3)
            verify(Qt.colorEqual(line.color, "blue"))
            const label = findChild(floor(2), "floorLabel")
            compare(label.x, 5)
            compare(label.radius, 10)
            verify(Qt.colorEqual(label.color, "lightgrey"))
            verify(Qt.colorEqual(label.border.color, "black"))
            compare(label.border.width, 1)
            compare(label.height, label.children[0].height + 10)
            compare(label.children[0].font.bold, false)
            fuzzyCompare(label.y + label.height / 2, line.y + 1.5, 0.01)
            compare(label.children[0].text, "Floor2 (6m)")
            compare(label.width, label.children[0].width + 10)
            compare(label.children[0].font.pointSize, 10)
        }

        function test_heights_are_numbers_with_no_more_than_millimetres() {
            floors.floorsModel = ["2.8", "2.8"]
            fuzzyCompare(floors.calculateY(1), 5.6, 1e-9)
            compare(findChild(floor(0), "floorLabel").children[0].text, "Floor0 (2.8m)")
        }

        function test_what_is_no_number_counts_as_nothing() {
            floors.floorsModel = ["0", "3", "x", "3"]
            compare(floors.calculateY(2), 3)
            compare(floors.calculateY(3), 6)
        }

        function test_without_a_model_there_is_none() {
            floors.floorsModel = []
            compare(floors.children.length, 1)
        }
    }
}
