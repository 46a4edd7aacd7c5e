import QtQuick 2.12
import com.torvik.view3d 1.0 as Torvik3d
import ostel.controls 1.0

/** A finger that drags the map under the scene instead of the view; what stands there gets the coordinates of its new
 *  place. */
QtObject {
    id: shift

    /** The view. */
    property Item area: null
    readonly property var controller: area && area.scene ? area.scene.cameraController : null
    readonly property var project: belmora.appStateData.activeProject
    readonly property bool possible: !!area && !!area.map && area.map.shown === true
    readonly property bool on: !!controller && controller.controlPlanes === Torvik3d.CameraController.Map

    function toggle() {
        if (on)
            end()
        else if (area.scene.sceneRoot.sceneHasNodesWithPosition())
            MessageBox.question(qsTr("Shift the map"),
                                qsTr("A drag then moves the map under the network. All of the project gets the "
                                     + "coordinates of its new place, and they are stored. Begin?"),
                                function(yes) {
                                    if (yes)
                                        begin()
                                })
        else
            begin()
    }

    function begin() {
        if (!possible)
            return
        area.mode3dType = Torvik3d.CameraController.Translate
        controller.controlPlanes = Torvik3d.CameraController.Map
    }

    function end() {
        if (controller)
            controller.controlPlanes = Torvik3d.CameraController.All
    }

    onPossibleChanged: {
        if (!possible)
            end()
    }
    onProjectChanged: end()
}
