import QtQuick 2.12

/** Floors and connections: what stands beside the compass, in a row, or in several where the view is narrow. Expects
 *  window3d and scene3d around it. */
Flow {
    id: controlRow

    readonly property bool shown: !window3d.splitViewMode

    spacing: 8

    ControlBox {
        id: floorsInputScreenButton

        property real floor1: 0.0
        property real floor2: 3.0
        property real floor3: 3.0
        property real floor4: 3.0

        function ask() {
            const heights = [floor1, floor2, floor3, floor4]
            screenManager.show("View3d::FloorsInputScreen", {
                "screenCallback": takeHeights,
                "inputMethodHints": Qt.ImhSensitiveData | Qt.ImhPreferLowercase | Qt.ImhNoPredictiveText,
                "model": heights.map(function(height, floor) {
                    return { "rowId": floor, "labelText": "Floor " + (floor + 1), "inputText": height }
                })
            })
        }

        function takeHeights(result) {
            if (!result || !result.floorsModel)
                return
            window3d.floorModel = result.floorsModel
            const heights = []
            for (let floor = 0; floor < result.floorsModel.length; ++floor)
                heights.push(result.floorsModel[floor])
            FloorNav.floorValues = heights
        }

        objectName: "floorsInputScreenButton"
        visible: controlRow.shown
        width: Math.max(100, textWidth + 20)
        radius: 4
        text: "Floors"
        onTapped: ask()
    }

    Repeater {
        model: 4

        ControlBox {
            objectName: "floorButton" + index
            visible: controlRow.shown
            width: 40
            radius: 5
            text: index + 1
            border { color: "black"; width: FloorNav.current === index ? 2.5 : 0 }
            onTapped: FloorNav.current = FloorNav.current === index ? -1 : index
        }
    }

    ControlBox {
        objectName: "pipeConnectButton"
        visible: controlRow.shown && GlobalNav.connectionMode && scene3d.sceneRoot.selectionsCount === 2
        width: textWidth + 20
        radius: 5
        text: "Connect"
        onTapped: {
            scene3d.sceneRoot.connectSelectedObjects()
            window3d.connectedState = true
        }
    }

    ControlBox {
        objectName: "pipeConnectApply"
        visible: controlRow.shown && window3d.connectedState
        width: textWidth + 20
        radius: 5
        text: "Apply"
        textColor: "green"
        onTapped: {
            scene3d.sceneRoot.connectApply()
            window3d.connectedState = false
            scene3d.sceneRoot.deselectAll()
        }
    }

    ControlBox {
        objectName: "pipeConnectCancel"
        visible: controlRow.shown && window3d.connectedState
        width: textWidth + 20
        radius: 5
        text: "Cancel"
        textColor: "red"
        onTapped: {
            scene3d.sceneRoot.connectCancel()
            window3d.connectedState = false
            scene3d.sceneRoot.deselectAll()
        }
    }
}
