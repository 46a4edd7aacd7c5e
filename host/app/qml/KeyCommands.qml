import QtQuick 2.12
import ostel.controls 1.0

/** What the keyboard does in the window; nothing while a card waits for the user. */
Item {
    id: keys

    property Item window3d: null
    readonly property Item scene: window3d ? window3d.scene : null
    /** Name of the selected object for a question; it is deleted after a yes. */
    property bool cardOpen: false
    readonly property bool active: !cardOpen && MessageBox.boxes.length === 0 && !viewer.sceneOnly
    readonly property real zoomStep: 0.8

    signal openWanted()
    signal helpWanted()

    function zoom(factor) {
        const camera = scene.camera
        if (camera.animationsRunning)
            return
        const distance = Math.max(camera.minDist, Math.min(camera.maxDist, camera.viewVectorLength * factor))
        const back = camera.viewVector.times(distance / camera.viewVectorLength)
        camera.setPose(camera.viewCenter.minus(back), camera.viewCenter, camera.upVector)
    }

    /** One step back: a connection that is being made, else the selection. */
    function leave() {
        if (GlobalNav.connectionMode || window3d.connectedState) {
            scene.sceneRoot.connectCancel()
            window3d.connectedState = false
        }
        scene.sceneRoot.deselectAll()
    }

    function askToDelete() {
        const id = viewer.currentId
        const question = id !== "" ? viewer.desk.questionBeforeDeleting(id) : ""
        if (question === "")
            return
        MessageBox.question(qsTr("Delete"), question, function(yes) {
            const error = yes ? viewer.desk.deleteObject(id) : ""
            if (error !== "")
                MessageBox.error(qsTr("Delete"), error)
        })
    }

    Shortcut { sequence: StandardKey.Open; enabled: keys.active; onActivated: keys.openWanted() }
    Shortcut { sequence: "1"; enabled: keys.active; onActivated: keys.scene.switchTo2dTop() }
    Shortcut { sequence: "2"; enabled: keys.active; onActivated: keys.scene.switchTo3d() }
    Shortcut { sequence: "3"; enabled: keys.active; onActivated: keys.scene.switchTo2dFront() }
    Shortcut { sequence: "F"; enabled: keys.active; onActivated: viewer.fit() }
    Shortcut { sequence: "Escape"; enabled: keys.active; onActivated: keys.leave() }
    Shortcut { sequences: ["+", StandardKey.ZoomIn]; enabled: keys.active; onActivated: keys.zoom(keys.zoomStep) }
    Shortcut { sequences: ["-", StandardKey.ZoomOut]; enabled: keys.active; onActivated: keys.zoom(1 / keys.zoomStep) }
    Shortcut { sequence: "Delete"; enabled: keys.active; onActivated: keys.askToDelete() }
    Shortcut { sequence: "F12"; enabled: keys.active; onActivated: viewer.desk.photos.takePicture(keys.window3d) }
    Shortcut { sequence: StandardKey.Print; enabled: keys.active; onActivated: viewer.desk.photos.printPage(keys.window3d) }
    Shortcut { sequence: "F1"; enabled: keys.active; onActivated: keys.helpWanted() }
}
