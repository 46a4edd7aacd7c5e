import QtQuick 2.12
import QtQuick.Controls 2.12
import ostel.controls 1.0

import "."

/** Shows what MessageBox holds, one after the other, and the waiting box. */
Item {
    id: boxes

    readonly property var box: MessageBox.boxes.length > 0 ? MessageBox.boxes[0] : null
    readonly property bool asks: !!box && box.kind === "question"

    anchors.fill: parent

    ModalCard {
        objectName: "waitingBox"
        visible: WaitingBox.shown
        caption: qsTr("Please wait")

        BusyIndicator {
            anchors.horizontalCenter: parent.horizontalCenter
            running: WaitingBox.shown
        }
    }

    ModalCard {
        objectName: "messageBox"
        visible: !!boxes.box
        focus: visible
        caption: boxes.box ? boxes.box.caption : ""
        onDismissed: MessageBox.answer(false)
        Keys.onReturnPressed: MessageBox.answer(true)

        Text {
            objectName: "messageText"
            width: parent.width
            text: boxes.box ? boxes.box.text : ""
            textFormat: Text.PlainText
            color: boxes.box && boxes.box.kind === "error" ? Style.alarm : Style.ink
            font.pixelSize: Style.textSize
            wrapMode: Text.Wrap
        }

        Row {
            width: parent.width
            spacing: Style.gap

            ToolButton {
                objectName: "yesButton"
                width: boxes.asks ? (parent.width - parent.spacing) / 2 : parent.width
                on: true
                text: boxes.asks ? qsTr("Yes") : qsTr("OK")
                onClicked: MessageBox.answer(true)
            }
            ToolButton {
                objectName: "noButton"
                width: (parent.width - parent.spacing) / 2
                visible: boxes.asks
                text: qsTr("No")
                onClicked: MessageBox.answer(false)
            }
        }
    }
}
