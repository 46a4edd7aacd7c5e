import QtQuick 2.12
import QtQuick.Layouts 1.12

import "."

/** What the user is to point at next, with the way on, back and out. */
RowLayout {
    id: row

    /** The TwoSectionInterface. */
    property var steps: null

    spacing: Style.gap

    Text {
        objectName: "planStepText"
        Layout.fillWidth: true
        text: row.steps ? row.steps.getCurrentStepDescription() : ""
        textFormat: Text.PlainText
        color: Style.ink
        font.pixelSize: Style.textSize
        wrapMode: Text.Wrap
    }
    ToolButton {
        objectName: "planNextButton"
        visible: !!row.steps && row.steps.ifNextStepButtonShouldBeVisible()
        enabled: !!row.steps && row.steps.ifNextStepButtonShouldBeEnabled()
        on: enabled
        text: qsTr("NEXT STEP")
        onClicked: row.steps.proceedToNextStep()
    }
    ToolButton {
        objectName: "planBackButton"
        enabled: !!row.steps && row.steps.state !== "noPointerYet"
        text: qsTr("BACK")
        onClicked: row.steps.previousStateOfOperationMode()
    }
    ToolButton {
        objectName: "planCancelButton"
        text: qsTr("CANCEL")
        onClicked: row.steps.finish()
    }
}
