import QtQuick 2.12
import QtQuick.Layouts 1.12

import "."

/** The bar beside the scene for work by hand: what is selected, and what a finger may do with it. */
Rectangle {
    id: tools

    property alias scene: work.scene
    property alias view: work.view
    property alias work: work

    /** Texts and buttons have room beside one another. */
    readonly property bool wide: width >= 680
    /** No connection is being made. */
    readonly property bool oneAtATime: !work.choosing && !work.pending

    implicitHeight: bar.implicitHeight + 2 * Style.gap
    color: Style.panel

    /** What is selected, or what is to be done next. */
    function title() {
        if (work.pending) {
            return qsTr("Connect it like this?")
        }
        if (work.choosing && work.count === 2) {
            return qsTr("%1 \u2192 %2").arg(work.firstName || "?").arg(work.name || work.kind)
        }
        return work.selected ? work.name || work.kind : qsTr("Nothing selected")
    }

    function hint() {
        if (work.pending) {
            return qsTr("Apply stores it, Cancel takes it back")
        }
        if (work.choosing) {
            return work.count === 0 ? qsTr("Tap the pipe that is to be connected")
                 : !work.firstIsPipe ? qsTr("A pipe must come first; cancel and begin anew")
                 : work.count === 1 ? qsTr("Tap what it leads to") : qsTr("Connect shows how it will be")
        }
        return work.selected ? work.kind : qsTr("Tap a manhole or a pipe")
    }

    HandWork {
        id: work
    }

    GridLayout {
        id: bar

        anchors {
            left: parent.left; right: parent.right
            margins: Style.gap; verticalCenter: parent.verticalCenter
        }
        columns: tools.wide ? 2 : 1
        columnSpacing: Style.gap
        rowSpacing: Style.gap

        Column {
            Layout.preferredWidth: 220
            Layout.fillWidth: !tools.wide
            Layout.leftMargin: Style.gap

            Text {
                objectName: "selectedName"
                width: parent.width
                text: tools.title()
                textFormat: Text.PlainText
                color: work.selected || work.choosing || work.pending ? Style.ink : Style.quietInk
                font.pixelSize: Style.textSize
                font.weight: Font.DemiBold
                elide: Text.ElideMiddle
            }
            Text {
                objectName: "selectedKind"
                width: parent.width
                text: tools.hint()
                textFormat: Text.PlainText
                color: Style.quietInk
                font.pixelSize: Style.smallTextSize
                wrapMode: Text.Wrap
                maximumLineCount: 2
                elide: Text.ElideRight
            }
        }

        Flow {
            Layout.fillWidth: true
            spacing: Style.gap
            layoutDirection: Qt.RightToLeft

            ToolButton {
                objectName: "connectButton"
                visible: !work.pending
                enabled: viewer.projectOpen && (!work.choosing || work.canConnect)
                text: qsTr("Connect")
                on: work.canConnect
                onClicked: work.choosing ? work.connectThem() : work.startChoosing()
            }
            ToolButton {
                objectName: "cancelConnectButton"
                visible: !tools.oneAtATime
                text: qsTr("Cancel")
                onClicked: work.cancel()
            }
            ToolButton {
                objectName: "applyConnectButton"
                visible: work.pending
                on: true
                text: qsTr("Apply")
                onClicked: work.apply()
            }
            ToolButton {
                objectName: "heightButton"
                visible: tools.oneAtATime
                enabled: work.grabbed
                text: work.heightFree ? qsTr("Height free") : qsTr("Height locked")
                on: enabled && work.heightFree
                onClicked: work.toggleHeight()
            }
            ToolButton {
                objectName: "arrowsButton"
                visible: tools.oneAtATime
                enabled: work.movable
                text: qsTr("Arrows")
                on: work.arrows
                onClicked: work.toggleArrows()
            }
            ToolButton {
                objectName: "turnObjectButton"
                visible: tools.oneAtATime
                enabled: work.movable
                text: qsTr("Turn")
                on: work.turning
                onClicked: work.toggleTurn()
            }
            ToolButton {
                objectName: "moveObjectButton"
                visible: tools.oneAtATime
                enabled: work.movable
                text: qsTr("Move")
                on: work.moving
                onClicked: work.toggleMove()
            }
        }
    }
}
