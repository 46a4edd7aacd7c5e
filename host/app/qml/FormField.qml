import QtQuick 2.12
import QtQuick.Controls 2.12

import "."

/** A line of a form: what it is, what is typed, and what is wrong with it. */
Column {
    id: field

    property string label
    property alias text: input.text
    property string error
    property bool number: false

    /** Return was pressed in it. */
    signal accepted()

    function takeFocus() {
        input.forceActiveFocus()
        input.selectAll()
    }

    spacing: 2

    Text {
        text: field.label
        color: Style.quietInk
        font.pixelSize: Style.smallTextSize
    }

    TextField {
        id: input

        objectName: field.objectName + "Input"
        width: parent.width
        implicitHeight: Style.touch
        selectByMouse: true
        onAccepted: field.accepted()
        color: Style.ink
        font.pixelSize: Style.textSize
        inputMethodHints: field.number ? Qt.ImhFormattedNumbersOnly : Qt.ImhPreferUppercase | Qt.ImhNoPredictiveText
        background: Rectangle {
            radius: Style.radius
            color: Style.paper
            border.width: input.activeFocus ? 2 : 1
            border.color: field.error !== "" ? Style.alarm : input.activeFocus ? Style.accent : Style.line
        }
    }

    Text {
        objectName: field.objectName + "Error"
        width: parent.width
        visible: text !== ""
        text: field.error
        textFormat: Text.PlainText
        color: Style.alarm
        font.pixelSize: Style.smallTextSize
        wrapMode: Text.Wrap
    }
}
