import QtQuick 2.12
import com.torvik.view3d 1.0 as Torvik3d

/** What the user does by hand with the objects of a scene: which one is selected, whether a finger moves or turns it,
 *  and which two are being connected. Every selection begins without leave to move anything. */
QtObject {
    id: handWork

    /** The Scene. */
    property Item scene: null
    /** The Window3d that it is in. */
    property Item view: null
    readonly property var root: scene ? scene.sceneRoot : null

    /** The object that was selected last, or null, and what the user calls it. */
    property var selected: null
    property string name
    property string kind

    readonly property var control: selected ? selected.touchControl : null
    /** Whether the selected object is one that a finger can move. */
    property bool movable: false
    readonly property bool grabbed: !!control && control.allowed
    readonly property bool moving: grabbed && GlobalNav.translateMode
    readonly property bool turning: grabbed && !GlobalNav.translateMode
    readonly property bool arrows: grabbed && control.axisArrowVisible
    readonly property bool heightFree: GlobalNav.axisY

    /** The two objects of a connection are being chosen. */
    readonly property bool choosing: GlobalNav.connectionMode
    /** A connection is shown and waits for being applied or cancelled. The view's own buttons make and end it too. */
    readonly property bool pending: !!view && view.connectedState
    property int count: 0
    property string firstName
    /** Only a pipe can be drawn to something. */
    property bool firstIsPipe: false
    readonly property bool canConnect: choosing && count === 2 && firstIsPipe

    property QtObject selectionConnections: Connections {
        target: handWork.root

        function onSelectedRenderableChanged() {
            handWork.refresh()
        }
    }

    property QtObject projectConnections: Connections {
        target: belmora.appStateData

        function onActiveProjectChanged() {
            handWork.refresh()
        }
    }

    property QtObject splitViewConnections: Connections {
        target: handWork.view

        // The view takes the connection back then.
        function onSplitViewModeChanged() {
            handWork.view.connectedState = false
        }
    }

    property QtObject viewConnections: Connections {
        target: GlobalNav

        function onViewTypeChanged() {
            if (handWork.arrows) {
                handWork.control.axisArrowVisible = false
                handWork.showArrows()
            }
        }
    }

    property QtObject languageConnections: Connections {
        target: language

        function onChanged() {
            handWork.kind = handWork.selected ? handWork.kindOf(handWork.selected) : ""
        }
    }

    function kindOf(object) {
        if (object.type === "section") {
            return qsTr("Pipe")
        }
        if (object.type === "connection") {
            return qsTr("Joint of a lateral")
        }
        if (object.type !== "node") {
            return ""
        }
        return object.nodeType === "BLD" ? qsTr("Building")
             : object.nodeType === "CON" ? qsTr("Connection") : qsTr("Manhole")
    }

    /** Takes over what the scene has selected. */
    function refresh() {
        const now = root ? root.selectedRenderable : null
        if (now !== selected) {
            release(selected)
            selected = now
            name = now ? now.name : ""
            kind = now ? kindOf(now) : ""
            movable = !!now && (now.type === "node" || now.type === "section")
        }
        count = root ? root.selectionsCount : 0
        if (count === 1 && now) {
            firstName = now.name
            firstIsPipe = now.type === "section"
        } else if (count === 0) {
            firstName = ""
            firstIsPipe = false
        }
    }

    function release(object) {
        if (object && object.touchControl) {
            object.touchControl.axisArrowVisible = false
            object.touchControl.allowed = false
        }
        GlobalNav.objectsMovingDisabled = true
        GlobalNav.translateMode = true
    }

    function grab() {
        control.allowed = true
        GlobalNav.objectsMovingDisabled = false
        // A press on a pipe moves the camera too, unless its arrows are there.
        if (selected.type === "section") {
            showArrows()
        }
    }

    function toggleMove() {
        if (moving) {
            release(selected)
        } else {
            grab()
            GlobalNav.translateMode = true
        }
    }

    function toggleTurn() {
        if (turning) {
            release(selected)
        } else {
            grab()
            GlobalNav.translateMode = false
        }
    }

    function showArrows() {
        control.axisArrowMode = GlobalNav.viewType === Torvik3d.CameraController.View2dFront ? "front" : "top"
        control.axisArrowVisible = true
    }

    function toggleArrows() {
        if (arrows) {
            control.axisArrowVisible = false
        } else {
            grab()
            showArrows()
        }
    }

    /** Locked, a finger moves things on their level only. */
    function toggleHeight() {
        const free = !heightFree
        GlobalNav.axisX = true
        GlobalNav.axisZ = true
        GlobalNav.axisY = free
    }

    function startChoosing() {
        // What is drawn to something else comes first.
        if (selected && selected.type !== "section") {
            root.deselectAll()
        }
        release(selected)
        root.maxSelection = 2
        GlobalNav.connectionMode = true
    }

    function connectThem() {
        root.connectSelectedObjects()
        view.connectedState = true
    }

    function apply() {
        root.connectApply()
        view.connectedState = false
        root.deselectAll()
    }

    /** Takes the connection back, or ends choosing. */
    function cancel() {
        root.connectCancel()
        view.connectedState = false
        root.deselectAll()
    }
}
