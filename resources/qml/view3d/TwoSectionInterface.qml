import QtQuick 2.12
import com.torvik.view3d 1.0 as Torvik3d
import utils 1.0

import "."

/** Lets the user point at one or two straight segments on the ground, by taps that he may correct by dragging: two
 *  points on a plan, and the two that they are to come to lie on. Set oprationMode and connect a handler, then enable
 *  it; it ends by itself. The points are scene coordinates. Expects a window3d around it. */
Item {
    id: root

    /** What aligns the plan with the points. */
    property Torvik3d.BackgroundController planController
    readonly property var stateNames: ["noPointerYet", "selectingFirstSectionStartPoint",
        "selectingFirstSectionEndPoint", "noPointerForSecondSection", "selectingSecondSectionFirstPoint", "confirmation",
        "confirmed"]
    property int oprationMode: TwoSectionMode.twoSections
    /** The one function that hears resultPointsReady. */
    property var connectedHandler
    /** First segment: 0 and 1; second: 2 and 3. */
    property var resultPoints: []
    /** Metres, of the one segment, as the user said. */
    property double sectionDistanceValue: 1.0
    property bool needsNextStepClick: true
    /** The one that a tap sets. */
    readonly property var activePointer: state === "noPointerYet" || state === "noPointerForSecondSection" ? pointSetter1
                                                                                                           : pointSetter2
    readonly property var scene: window3d.scene3d
    readonly property var camera: scene ? scene.camera : null

    signal resultPointsReady(vector3d p1, vector3d p2, vector3d p3, vector3d p4)
    signal finished()

    function connectToResultPoints(handler) {
        if (connectedHandler) {
            console.log("handler already connected - please disconnect first")
            return
        }
        connectedHandler = handler
        resultPointsReady.connect(handler)
    }

    function disconnectFromResultPoints() {
        if (!connectedHandler)
            return
        resultPointsReady.disconnect(connectedHandler)
        connectedHandler = undefined
    }

    function getCurrentStepDescription() {
        return enabled ? steps.description(oprationMode, stateNames.indexOf(state)) : ""
    }

    function ifNextStepButtonShouldBeVisible() {
        return enabled ? needsNextStepClick : false
    }

    function ifNextStepButtonShouldBeEnabled() {
        return state === "selectingFirstSectionEndPoint" || state === "confirmation"
    }

    function proceedToNextStep() {
        pointSetter1.updateControlledResultPoint()
        pointSetter2.updateControlledResultPoint()
        nextStateOfOperationMode()
    }

    function nextStateOfOperationMode() {
        if (oprationMode === TwoSectionMode.oneSection && state === "selectingFirstSectionStartPoint") {
            state = "confirmation"
        } else if (oprationMode === TwoSectionMode.oneSectionAndValue && state === "selectingFirstSectionEndPoint") {
            askForDistance()
        } else {
            goToState(stateNames.indexOf(state) + 1)
        }
    }

    function previousStateOfOperationMode() {
        if (oprationMode !== TwoSectionMode.twoSections && state === "confirmation") {
            state = "selectingFirstSectionStartPoint"
        } else if (stateNames.indexOf(state) > 0) {
            goToState(stateNames.indexOf(state) - 1)
        } else {
            canvas.requestPaint()
        }
        fixBigCrossesPositionWhenFirstSectionIsActivated()
    }

    function goToState(index) {
        if (index < stateNames.length) {
            state = stateNames[index]
        } else {
            console.log("Internal error: TwoSectionInterface: Trying to move to the not existing state. Current index: "
                        + index + " state number: " + stateNames.length)
        }
    }

    function fixBigCrossesPositionWhenFirstSectionIsActivated() {
        if (oprationMode !== TwoSectionMode.twoSections || state !== "selectingFirstSectionEndPoint")
            return
        pointSetter1.standAt(resultPoints[0])
        pointSetter2.standAt(resultPoints[1])
    }

    function restorePointers() {
        pointSetter1.restoreSavedWorldPosition()
        pointSetter2.restoreSavedWorldPosition()
    }

    function ifDefiningFirstSegment() {
        return oprationMode !== TwoSectionMode.twoSections || stateNames.indexOf(state) < 3
    }

    function askForDistance() {
        const unit = formatHelper.distanceUnitString()
        screenManager.show("Input::ValueInputScreen", {
            "caption": translator.txt("CaptionSetSectionDistanceValue", "Set section distance value"),
            "labelText": translator.txt("TxtSetSectionDistanceValue", "Section distance value") + " [" + unit + "]",
            "defaultValue": 0,
            "validator": distanceValidator,
            "inputMethodHints": Qt.ImhDigitsOnly | Qt.ImhNoPredictiveText,
            "screenCallback": function(result) {
                // It may be answered after all is over.
                if (!root.enabled)
                    return
                if (result === undefined || result === null || result === false || result === "") {
                    state = "selectingFirstSectionEndPoint"
                    return
                }
                const metres = formatHelper.convertLength(unit, "m", result)
                // By what is no number the plan would be lost; of a length of nothing the handler tells.
                if (isNaN(metres)) {
                    state = "selectingFirstSectionEndPoint"
                    return
                }
                sectionDistanceValue = metres
                state = "confirmed"
            }
        })
    }

    function announceResult() {
        const none = Qt.vector3d(0, 0, 0)
        switch (oprationMode) {
        case TwoSectionMode.oneSection:
            resultPointsReady(resultPoints[0], resultPoints[1], none, none)
            break
        case TwoSectionMode.oneSectionAndValue:
            resultPointsReady(resultPoints[0], resultPoints[1], Qt.vector3d(sectionDistanceValue, 0, 0), none)
            break
        default:
            resultPointsReady(resultPoints[0], resultPoints[1], resultPoints[2], resultPoints[3])
        }
    }

    function finish() {
        disconnectFromResultPoints()
        resultPoints = []
        pointSetter1.moveTo(width / 2, height / 2)
        pointSetter1.saveWorldPosition()
        enabled = false
        finished()
    }

    anchors.fill: parent
    enabled: false
    visible: enabled
    state: "noPointerYet"

    onWidthChanged: restorePointers()
    onHeightChanged: restorePointers()
    onEnabledChanged: {
        // A manhole is a good point to place a plan at: taps on it are points now.
        if (scene && scene.sceneRoot.selectionsEnabled !== undefined)
            scene.sceneRoot.selectionsEnabled = !enabled
        if (enabled)
            state = "noPointerYet"
    }
    onStateChanged: {
        canvas.requestPaint()
        if (state === "confirmed") {
            announceResult()
            finish()
        }
    }

    Connections {
        target: root.visible && root.scene ? root.scene.sceneRoot : null
        function onDeselectionMouseEvent(mouseEvent) {
            if (!root.activePointer.isOnGround(mouseEvent.x, mouseEvent.y))
                return
            root.activePointer.moveTo(mouseEvent.x, mouseEvent.y)
            root.activePointer.saveWorldPosition()
            canvas.requestPaint()
            if (!root.ifNextStepButtonShouldBeEnabled())
                root.proceedToNextStep()
        }
    }

    Connections {
        target: root.visible ? root.camera : null
        function onViewCenterChanged() { root.restorePointers() }
        function onPositionChanged() { root.restorePointers() }
        function onUpVectorChanged() { root.restorePointers() }
        function onProjectionMatrixChanged() { root.restorePointers() }
    }

    DoubleValidator {
        id: distanceValidator

        bottom: 0
    }

    TwoSectionSteps {
        id: steps
    }

    TwoSectionCanvas {
        id: canvas

        anchors.fill: parent
        overlay: root
        first: pointSetter1
        second: pointSetter2
    }

    TwoSectionPointer {
        id: pointSetter1

        objectName: "pointSetter1"
        overlay: root
        indexOfFirstSegment: 0
        indexOfSecondSegment: 2
        visible: root.state !== "noPointerYet" && root.state !== "noPointerForSecondSection"
        onMoved: canvas.requestPaint()
    }

    TwoSectionPointer {
        id: pointSetter2

        objectName: "pointSetter2"
        overlay: root
        indexOfFirstSegment: 1
        indexOfSecondSegment: 3
        visible: root.state === "selectingFirstSectionEndPoint" || root.state === "confirmation"
        onMoved: canvas.requestPaint()
    }

    Translator {
        id: translator

        translationClassName: "Torvik.Belmora.App.TwoSectionInterface"
    }
}
