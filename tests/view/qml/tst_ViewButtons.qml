import Qt3D.Render 2.12
import QtQuick 2.12
import QtTest 1.12
import com.torvik.view3d 1.0 as Torvik3d

import "qrc:/qml/view3d"

/** The view's buttons, with a finger on them. */
CameraWindow {
    id: window3d

    Item {
        id: scene3d

        property alias camera: theCamera
        property QtObject sceneRoot: QtObject {
            property var selectedRenderable: null
        }

        anchors.fill: parent

        property QtObject cameraHolder: Camera {
            id: theCamera

            property real viewVectorLength: viewVector.length()
            property real minDist: 5
            property real maxDist: 500000
            property int viewType: Torvik3d.CameraController.View2dTop

            fieldOfView: 3
            aspectRatio: 1.5
        }
    }

    QtObject {
        id: pointer

        property bool visible: false

        function position() {
            return Qt.vector3d(-2, 0, 1)
        }
    }

    Item {
        id: topRight

        x: 536
        width: 64
        height: 64

        DragZoom3dButton {
            id: zoomIn

            iconActive: design.icons.button3DZoomPlusPipeViewscreen.active
            iconInactive: design.icons.button3DZoomPlusPipeViewscreen.enabled
        }
    }

    Item {
        id: bottomRight

        x: 536
        y: 336
        width: 64
        height: 64

        DragZoom3dButton {
            id: zoomOut

            zoomIn: false
        }
    }

    AxisButtons {
        id: axisButtons
    }

    ButtonView3d {
        id: plain

        property int clicks: 0

        x: 100
        iconClicked: "qrc:/icons/zoom-plus-active.png"
        iconNormal: "qrc:/icons/zoom-plus.png"
        clickAction: function() {
            clicks++
        }
    }

    Component {
        id: modeButton

        ButtonView3d {
            property int clicks: 0

            x: 200
            iconClicked: "qrc:/icons/zoom-plus-active.png"
            iconNormal: "qrc:/icons/zoom-plus.png"
            modeButtonMode: Torvik3d.CameraController.Rotate
            clickAction: function() {
                clicks++
            }
        }
    }

    TestCase {
        name: "ViewButtons"
        when: windowShown

        function init() {
            theCamera.position = Qt.vector3d(0, 350, 0)
            theCamera.viewCenter = Qt.vector3d(0, 0, 0)
            theCamera.upVector = Qt.vector3d(0, 0, 1)
            theCamera.viewType = Torvik3d.CameraController.View2dTop
            theCamera.minDist = 5
            theCamera.maxDist = 500000
            scene3d.sceneRoot.selectedRenderable = null
            zoomIn.screenPointer = undefined
            pointer.visible = false
        }

        function near(actual, expected) {
            verify(actual.minus(expected).length() < 0.01, actual + " is not " + expected)
        }

        function dragged(button, dx, dy) {
            mousePress(button, 32, 32)
            mouseMove(button, 32 + dx / 2, 32 + dy / 2)
            mouseMove(button, 32 + dx, 32 + dy)
        }

        function test_thirtyFivePixelsHalveTheDistance() {
            dragged(zoomIn, -35, 0)
            compare(zoomIn.distFromOrigin, 35)
            compare(zoomIn.state, "active")
            fuzzyCompare(theCamera.viewVector.length(), 350 * Math.pow(0.98, 35), 0.01)

            mouseRelease(zoomIn, -3, 32)
            compare(zoomIn.distFromOrigin, 0)
            compare(zoomIn.state, "normal")
            fuzzyCompare(theCamera.viewVector.length(), 350 * Math.pow(0.98, 35), 0.01)
        }

        function test_goingBackUndoesTheZoom() {
            dragged(zoomIn, -60, 80)
            verify(theCamera.viewVector.length() < 60)
            mouseMove(zoomIn, 32, 32)
            near(theCamera.position, Qt.vector3d(0, 350, 0))
            mouseRelease(zoomIn, 32, 32)
        }

        function test_theOtherButtonZoomsOut() {
            dragged(zoomOut, -30, -40)
            fuzzyCompare(theCamera.viewVector.length(), 350 * Math.pow(1.02, 50), 0.05)
            mouseRelease(zoomOut, 2, -8)
        }

        function test_theLimitsStopTheZoom() {
            theCamera.minDist = 200
            dragged(zoomIn, -300, 0)
            fuzzyCompare(theCamera.viewVector.length(), 200, 0.001)
            mouseRelease(zoomIn, -268, 32)
            theCamera.maxDist = 400
            dragged(zoomOut, -300, 0)
            fuzzyCompare(theCamera.viewVector.length(), 400, 0.001)
            mouseRelease(zoomOut, -268, 32)
        }

        function test_theButtonStaysOnTheScene() {
            dragged(zoomIn, 50, -50)
            compare(zoomIn.distFromOrigin, 0)
            mouseRelease(zoomIn, 82, -18)

            mousePress(zoomIn, 60, 4)
            mouseMove(zoomIn, -400, 200)
            mouseMove(zoomIn, -534, 396)
            compare(zoomIn.distFromOrigin, Math.sqrt(536 * 536 + 336 * 336))
            mouseRelease(zoomIn, -534, 396)
        }

        function test_theSelectedObjectStaysWhereItIsOnTheScreen() {
            const place = Qt.vector3d(3, 0, -2)
            scene3d.sceneRoot.selectedRenderable = { position: place }
            const before = Utils3D.pointWorldToScreen(theCamera, place, 600, 400)
            dragged(zoomIn, -35, 0)
            const after = Utils3D.pointWorldToScreen(theCamera, place, 600, 400)
            mouseRelease(zoomIn, -3, 32)
            near(zoomIn.zoomCenter, place)
            fuzzyCompare(after.x, before.x, 0.5)
            fuzzyCompare(after.y, before.y, 0.5)
        }

        function test_whatTheZoomGoesTo_data() {
            return [
                { tag: "selection outside the view", selected: Qt.vector3d(50, 0, 0), pointed: false,
                  center: Qt.vector3d(0, 0, 0) },
                { tag: "pointer", selected: null, pointed: true, center: Qt.vector3d(-2, 0, 1) },
                { tag: "selection before pointer", selected: Qt.vector3d(1, 0, 1), pointed: true,
                  center: Qt.vector3d(1, 0, 1) },
                { tag: "view centre", selected: null, pointed: false, center: Qt.vector3d(0, 0, 0) }
            ]
        }

        function test_whatTheZoomGoesTo(data) {
            scene3d.sceneRoot.selectedRenderable = data.selected ? { position: data.selected } : null
            zoomIn.screenPointer = pointer
            pointer.visible = data.pointed
            dragged(zoomIn, -10, 0)
            mouseRelease(zoomIn, 22, 32)
            near(zoomIn.zoomCenter, data.center)
        }

        function test_theViewCentreStaysOnTheGroundExceptFromTheFront() {
            scene3d.sceneRoot.selectedRenderable = { position: Qt.vector3d(1, 4, 0) }
            dragged(zoomIn, -35, 0)
            mouseRelease(zoomIn, -3, 32)
            fuzzyCompare(theCamera.viewCenter.y, 0, 1e-4)
            fuzzyCompare(theCamera.viewCenter.x, theCamera.position.x, 1e-4)

            theCamera.viewType = Torvik3d.CameraController.View2dFront
            theCamera.position = Qt.vector3d(0, 0, -350)
            theCamera.viewCenter = Qt.vector3d(0, 0, 0)
            theCamera.upVector = Qt.vector3d(0, 1, 0)
            dragged(zoomIn, -35, 0)
            mouseRelease(zoomIn, -3, 32)
            fuzzyCompare(theCamera.viewCenter.y, 4 - 4 * Math.pow(0.98, 35), 0.01)
        }

        function test_axisButtonsSwitchTheLock() {
            verify(!axisButtons.visible)
            verify(!axisButtons.enabled)
            const level = findChild(axisButtons, "axisLockXZ")
            const height = findChild(axisButtons, "axisLockY")
            compare(height.y, level.height + 5)

            height.clickAction()
            compare([GlobalNav.axisX, GlobalNav.axisY, GlobalNav.axisZ], [false, true, false])
            compare([level.state, height.state], ["normal", "modeSet"])

            level.clickAction()
            compare([GlobalNav.axisX, GlobalNav.axisY, GlobalNav.axisZ], [true, false, true])
            compare([level.state, height.state], ["modeSet", "normal"])
        }

        function sourceOf(button) {
            for (let i = 0; i < button.children.length; ++i) {
                if (button.children[i].fillMode !== undefined)
                    return String(button.children[i].source)
            }
            return undefined
        }

        function test_aClickShowsAndActs() {
            plain.clicks = 0
            compare(plain.duration, 150)
            compare(plain.state, "normal")
            compare(sourceOf(plain), "qrc:/icons/zoom-plus.png")
            mouseClick(plain)
            compare(plain.clicks, 1)
            compare(plain.state, "clicked")
            compare(sourceOf(plain), "qrc:/icons/zoom-plus-active.png")
            tryCompare(plain, "state", "normal")
            compare(sourceOf(plain), "qrc:/icons/zoom-plus.png")
        }

        function test_aModeButtonOnlyActs() {
            window3d.mode3dType = Torvik3d.CameraController.Rotate
            const set = createTemporaryObject(modeButton, window3d)
            compare(set.state, "modeSet")
            compare(sourceOf(set), "qrc:/icons/zoom-plus-active.png")
            window3d.mode3dType = Torvik3d.CameraController.Translate
            const other = createTemporaryObject(modeButton, window3d)
            compare(other.state, "normal")
            mouseClick(other)
            compare(other.clicks, 1)
            compare(other.state, "normal")
        }
    }
}
