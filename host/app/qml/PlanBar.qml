import QtQuick 2.12
import QtQuick.Dialogs 1.3
import QtQuick.Layouts 1.12
import ostel.controls 1.0
import ostel.screens 1.0
import projectmanagement 1.0
import view3d 1.0 as View3d

import "."

/** The bar for plans: under the network and on the floors of a building. */
Rectangle {
    id: bar

    /** The application's PlanWork, or null. */
    property var plans: null
    /** The view, with its twoSectionInterface and floorModel. */
    property Item area: null
    property bool open: false
    property bool shown: true
    readonly property var steps: area ? area.twoSectionInterface : null
    readonly property bool placing: !!steps && steps.enabled
    readonly property bool hasPlan: !!plans && plans.hasPlan

    /** Loads a file's plan; asks first where one lies already. */
    function choose(file) {
        if (refused(file))
            return
        const question = plans.questionBeforeLoad()
        if (question === "") {
            load(file)
            return
        }
        MessageBox.question(qsTr("Replace the plan?"), question, function(yes) {
            // Meanwhile much may have happened to the file and the project.
            if (yes && !refused(file))
                load(file)
        })
    }

    function refused(file) {
        const why = plans.refusal(file)
        if (why !== "")
            MessageBox.error(qsTr("This cannot be a plan"), why)
        return why !== ""
    }

    function load(file) {
        screenManager.show("View3d::PlanLoadingScreen", {
            "filePath": decodeURIComponent(file.toString().replace("file://", "")),
            "loadingController": plans
        })
        plans.load(file)
    }

    /** Has the user point at lines, and lays the plan by them. */
    function place(mode) {
        steps.planController = plans.controller
        steps.oprationMode = mode
        steps.disconnectFromResultPoints()
        steps.connectToResultPoints(function(p1, p2, p3, p4) {
            const problem = plans.align(mode, p1, p2, p3, p4)
            if (problem !== "")
                MessageBox.error(qsTr("The plan stays where it is"), problem)
        })
        steps.enabled = true
    }

    function askForHeights() {
        const heights = plans.heights
        screenManager.show("View3d::FloorsInputScreen", {
            "model": heights.map(function(height, floor) {
                return { "rowId": floor, "labelText": qsTr("Floor %1").arg(floor + 1), "inputText": height }
            }),
            "screenCallback": function(result) {
                if (!result)
                    return
                plans.heights = result.floorsModel
            }
        })
    }

    function remove() {
        const text = plans.forALook
            ? qsTr("%1 is taken out of the view. Its file stays where it is.") : plans.floor < 0
            ? qsTr("%1 is taken out of the view and out of the project. Its file stays among the project's documents.")
            : qsTr("%1 is taken off this floor. Its file stays among the project's documents.")
        MessageBox.question(qsTr("Remove the plan?"), text.arg(plans.planName), function(yes) {
            if (yes)
                plans.remove()
        })
    }

    visible: open && shown && !!plans
    implicitHeight: visible ? rows.implicitHeight + 2 * Style.gap : 0
    color: Style.panel

    onVisibleChanged: {
        if (!visible && placing)
            steps.finish()
    }
    Component.onCompleted: MessageBoxUtils.explain = function(kind) { return plans ? plans.explanation(kind) : "" }

    Connections {
        target: bar.plans

        function onEnded() { screenManager.close() }
        function onFailed(text) {
            MessageBox.error(qsTr("The plan cannot be laid"), text, function() { screenManager.close() })
        }
        function onNotStored(text) { MessageBox.error(qsTr("Not stored"), text) }
        function onNoted(text) { MessageBox.info(qsTr("Not all of the plan is there"), text) }
    }

    Connections {
        target: FloorNav

        // Floors are seen from the front as lines.
        function onFloorValuesChanged() {
            if (bar.area)
                bar.area.floorModel = FloorNav.floorValues
        }
    }

    ColumnLayout {
        id: rows

        anchors { left: parent.left; right: parent.right; top: parent.top; margins: Style.gap }
        spacing: Style.gap

        PlanSteps {
            Layout.fillWidth: true
            visible: bar.placing
            steps: bar.steps
        }

        Flow {
            Layout.fillWidth: true
            visible: !bar.placing
            spacing: Style.gap

            Repeater {
                model: [qsTr("Under the network"), qsTr("Floor %1").arg(1), qsTr("Floor %1").arg(2),
                    qsTr("Floor %1").arg(3), qsTr("Floor %1").arg(4)]

                ToolButton {
                    objectName: "planPlace" + index
                    text: modelData
                    on: !!bar.plans && bar.plans.floor === index - 1
                    onClicked: bar.plans.floor = index - 1
                }
            }
            ToolButton {
                objectName: "planHeightsButton"
                text: qsTr("Heights…")
                onClicked: bar.askForHeights()
            }
        }

        Flow {
            Layout.fillWidth: true
            visible: !bar.placing
            spacing: Style.gap

            ToolButton {
                objectName: "planChooseButton"
                text: qsTr("Choose a file…")
                onClicked: fileDialog.active = true
            }
            Repeater {
                model: [
                    { id: "planTwoLinesButton", name: qsTr("Place by two lines"), mode: View3d.TwoSectionMode.twoSections },
                    { id: "planLengthButton", name: qsTr("Scale by a length"),
                      mode: View3d.TwoSectionMode.oneSectionAndValue },
                    { id: "planNorthButton", name: qsTr("North by two points"), mode: View3d.TwoSectionMode.oneSection }
                ]

                ToolButton {
                    objectName: modelData.id
                    text: modelData.name
                    enabled: bar.hasPlan
                    onClicked: bar.place(modelData.mode)
                }
            }
            ToolButton {
                objectName: "planLockButton"
                text: qsTr("Move with the view")
                enabled: bar.hasPlan
                on: !!bar.plans && bar.plans.locked
                onClicked: bar.plans.locked = !bar.plans.locked
            }
            ToolButton {
                objectName: "planRemoveButton"
                text: qsTr("Remove")
                enabled: bar.hasPlan
                onClicked: bar.remove()
            }
            Text {
                objectName: "planName"
                height: Style.touch
                verticalAlignment: Text.AlignVCenter
                text: !bar.hasPlan ? qsTr("No plan here")
                                   : bar.plans.forALook ? qsTr("%1, for a look").arg(bar.plans.planName) : bar.plans.planName
                textFormat: Text.PlainText
                color: Style.quietInk
                font.pixelSize: Style.textSize
            }
        }
    }

    Loader {
        id: fileDialog

        active: false
        sourceComponent: FileDialog {
            title: qsTr("Choose a plan")
            nameFilters: PlanKinds.nameFilters
            Component.onCompleted: open()
            onAccepted: {
                fileDialog.active = false
                bar.choose(fileUrl)
            }
            onRejected: fileDialog.active = false
        }
    }
}
