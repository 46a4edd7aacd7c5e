import QtQuick 2.12
import com.torvik.view3d 1.0 as Torvik3d

/** The view that a host embeds: map and scene, with the controls over them. It stands before its scene does: `scene3d`,
 *  `map` and `compass` are undefined until they have loaded. The host sets `splitViewMode`, `screenPointer` and
 *  `toggleSplitViewCallback`, and emits beforeSplitViewModeChanged ahead of changing the mode. */
Item {
    id: window3d

    property alias mode3dTypes: modes
    property alias sceneLoader: loader
    property alias twoSectionInterface: twoSections
    property var cameraController: scene3d ? scene3d.cameraController : undefined
    /** The host's pointer in the scene, with `visible` and `position()`. */
    property var screenPointer
    /** What a screenshot is taken of. */
    property var screenShootArea
    property bool mode3d: !!scene3d && !!scene3d.mode3d
    property bool splitViewMode: false
    /** What one finger does. */
    property int mode3dType: modes.translate
    property bool rotationIsTurnedOn: menu.controlTypeModeButton.isRotationMode
    property bool disableModeTypeSwitch: false
    property bool rotationTranslationButtonEnabled: true
    property var scene3d
    property var map
    property var compass
    /** Degrees, clockwise. */
    property real cameraNorthRotation: compass ? compass.rotation : 0.0
    property bool photoAreaDashedRectangleVisible: false
    property bool mapVisible: true
    /** The buttons and panels over the scene; without them it is the scene alone, as for a picture. */
    property bool controlsVisible: true
    /** False for a host without a map; the scene is then to be tied to the earth by the host. */
    property bool mapWanted: true
    property bool obsVisible: true
    property bool labelsVisible: true
    property bool manholeFullInfoVisible: false
    property bool screenshotPending: false
    /** The scene is seen through over the map. */
    property real sceneTransparency: map && map.shown ? 0 : 1.0
    /** Degrees. */
    property real cameraFOV: 3
    property var toggleSplitViewCallback
    property bool gridVisible: true
    property bool gridDisabled: false
    property bool gridIsFarAwayFromCamera: false
    readonly property real gridVisibilityLimit: 3500
    /** A connection of two objects waits to be applied or cancelled. */
    property bool connectedState: false
    /** Heights of the floors in metres, each above the one below. */
    property var floorModel: []

    signal beforeSplitViewModeChanged()

    function switchMode(modeButtonMode) {
        if (modeButtonMode === mode3dType)
            return
        if (!mode3d && (modeButtonMode === modes.zoom || modeButtonMode === modes.tilt))
            return
        mode3dType = modeButtonMode
    }

    function loadBackground(path) {
        scene3d.sceneRoot.planLoader.loadPlan(path)
    }

    function toggleMap() {
        mapVisible = !mapVisible
        return mapVisible
    }

    function toggleGrid() {
        gridVisible = !gridVisible
        return gridVisible
    }

    function gotoAddress(address) {
        if (map)
            map.gotoAddress(address)
    }

    function gotoPosition(position) {
        if (map)
            map.gotoPosition(position)
    }

    function calculateRotationState(new3DMode) {
        if (new3DMode === modes.rotate)
            rotationIsTurnedOn = true
        else if (new3DMode === modes.translate)
            rotationIsTurnedOn = false
    }

    function pipeViewBiggerThan40Percentage() {
        return window3d.width > 420
    }

    function zoomButtonAction(item) {
        if (item.state === "normal")
            switchMode(modes.zoom)
        else
            switchMode(rotationIsTurnedOn ? modes.rotate : modes.translate)
    }

    function isOnMain3DScreen() {
        return scene3d ? scene3d.camera.isInspectionScreen() : true
    }

    function toggleTwoSectionInterface(oprationMode) {
        twoSections.oprationMode = oprationMode
        twoSections.enabled = !twoSections.enabled
    }

    onBeforeSplitViewModeChanged: {
        if (!splitViewMode) {
            connectedState = false
            if (scene3d)
                scene3d.camera.rememberCameraFullViewState()
        }
    }
    onSplitViewModeChanged: {
        if (scene3d) {
            scene3d.sceneRoot.connectCancel()
            scene3d.sceneRoot.deselectAll()
        }
        switchMode(modes.translate)
    }

    Binding { target: GlobalNav; property: "obsVisible"; value: window3d.obsVisible }
    Binding { target: GlobalNav; property: "labelsVisible"; value: window3d.labelsVisible }
    Binding { target: GlobalNav; property: "manholeFullInfoVisible"; value: window3d.manholeFullInfoVisible }

    Connections {
        target: window3d.scene3d ? window3d.scene3d.camera : null

        // The map says so too, ahead of this; a host may have none.
        function onViewVectorLengthChanged() {
            window3d.gridIsFarAwayFromCamera = target.viewVectorLength > window3d.gridVisibilityLimit
        }
    }

    QtObject {
        // Bound, since the host names the signal.
        readonly property string projectId: belmora.appStateData.activeProject.valid
                                            ? belmora.appStateData.activeProject.id() : ""

        // What was to be connected went with its project.
        onProjectIdChanged: window3d.connectedState = false
    }

    QtObject {
        id: modes

        readonly property int none: Torvik3d.CameraController.None
        readonly property int rotate: Torvik3d.CameraController.Rotate
        readonly property int translate: Torvik3d.CameraController.Translate
        readonly property int tilt: Torvik3d.CameraController.Tilt
        readonly property int zoom: Torvik3d.CameraController.Zoom
    }

    TwoSectionInterface {
        id: twoSections

        objectName: "twoSectionInterface"
        // Its pointers lie over the scene.
        z: 1
        opacity: window3d.screenshotPending ? 0 : 1
    }

    Loader {
        id: loader

        anchors.fill: parent
        active: true
        asynchronous: true
        sourceComponent: MapAndScene {}
    }

    FloorSet {
        objectName: "floorSet"
        floorsModel: window3d.floorModel
        opacity: window3d.screenshotPending ? 0 : 1
    }

    MapNotice {
        id: mapNotice

        objectName: "mapNotice"
        anchors { left: parent.left; bottom: parent.bottom }
        map: window3d.map
        space: parent.width - zoomOutButton.width
    }

    GridScaleInfo {
        objectName: "gridScaleInfo"
        anchors.bottomMargin: baseMargin + (mapNotice.visible ? mapNotice.height : 0)
        opacity: window3d.screenshotPending ? 0 : 1
        parentScene: window3d.scene3d
        gridSeaLevel: window3d.scene3d ? window3d.scene3d.sceneRoot.gridSeaLevel : 0
        pixelScale: pixelScaleOfScene
    }

    Rectangle {
        objectName: "view3dLeftPanel"
        anchors { top: parent.top; left: parent.left }
        z: 99999
        visible: window3d.controlsVisible
        width: leftColumn.width
        height: leftColumn.height
        // Nothing is seen of it while its buttons are out of service.
        color: axisButtons.enabled ? Qt.rgba(0.7, 0.7, 0.7, 0.4) : "transparent"

        Column {
            id: leftColumn

            height: 50
            spacing: 3
            leftPadding: 6
            rightPadding: 6

            AxisButtons {
                id: axisButtons
            }
        }
    }

    PassingLateral {
        objectName: "lateralQuickAccess"
    }

    ZoomHandle {
        objectName: "zoomInButton"
        anchors { top: parent.top; right: parent.right }
        zoomIn: true
        icons: design.icons.button3DZoomPlusPipeViewscreen
        visible: window3d.controlsVisible
    }

    ZoomHandle {
        id: zoomOutButton

        objectName: "zoomOutButton"
        anchors { bottom: parent.bottom; right: parent.right }
        zoomIn: false
        icons: design.icons.button3DZoomMinusPipeViewscreen
        visible: window3d.controlsVisible
    }

    View3dMenu {
        id: menu

        objectName: "view3dMenu"
        anchors { right: parent.right; verticalCenter: parent.verticalCenter }
        visible: window3d.controlsVisible
    }
}
