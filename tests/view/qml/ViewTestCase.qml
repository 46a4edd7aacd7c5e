import QtQuick 2.12
import QtTest 1.12
import Torvik.Geo 1.0 as TorvikGeo
import view3d 1.0 as View3d

/** The view as a host embeds it, a fresh one for each test, and a hand for it. */
TestCase {
    id: testCase

    /** What the view fills. */
    property Item frame
    property var view
    property var scene

    property Component windowComponent: Component {
        View3d.Window3d {
            anchors.fill: parent
        }
    }
    /** Its scene stands at once: Qt falls over a collection of garbage that meets a hundred windows half loaded. */
    property Component loadedComponent: Component {
        View3d.Window3d {
            anchors.fill: parent
            sceneLoader.asynchronous: false
        }
    }

    when: windowShown

    function init() {
        frame.width = 900
        frame.height = 600
        TorvikGeo.GeoProjector.initFromMap(51, 10, 0)
        view = createTemporaryObject(loadedComponent, frame)
        verify(view)
        tryVerify(function() { return !!view.compass && !!view.scene3d && !!find(view, "floorButton3") }, 10000)
        scene = view.scene3d
        // The menu unfolds.
        tryCompare(child("view3dMenu"), "height", 129)
    }

    function cleanup() {
        scene.camera.animScheduler.completeAll()
        host.setPage("Screens::InspectionScreen")
        scene.sceneRoot.deselectAll()
        GlobalNav.connectionMode = false
        GlobalNav.lateralNotInProximity()
        FloorNav.current = -1
        FloorNav.floorValues = []
        host.closeProject()
    }

    /** By its name, among the items and what repeaters made. */
    function find(item, name) {
        if (item.objectName === name)
            return item
        for (let i = 0; i < item.children.length; ++i) {
            const found = find(item.children[i], name)
            if (found)
                return found
        }
        return null
    }

    function child(name) {
        const found = find(view, name)
        verify(found, name)
        return found
    }

    /** Taps the middle of an item, with the mouse or a finger. */
    function tap(item, hand) {
        if (hand !== "touch") {
            mouseClick(item)
            return
        }
        const finger = touchEvent(item)
        finger.press(0, item).commit()
        finger.release(0, item).commit()
    }

    /** Drags from the middle of an item. */
    function drag(item, dx, dy, hand) {
        const x = item.width / 2
        const y = item.height / 2
        if (hand !== "touch") {
            mousePress(item, x, y)
            mouseMove(item, x + dx / 2, y + dy / 2)
            mouseMove(item, x + dx, y + dy)
            mouseRelease(item, x + dx, y + dy)
            return
        }
        const finger = touchEvent(item)
        finger.press(0, item, x, y).commit()
        for (let step = 1; step <= 4; ++step)
            finger.move(0, item, x + dx * step / 4, y + dy * step / 4).commit()
        finger.release(0, item, x + dx, y + dy).commit()
    }
}
