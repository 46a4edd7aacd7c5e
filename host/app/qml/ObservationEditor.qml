import QtQuick 2.12
import QtQuick.Controls 2.12
import QtQuick.Layouts 1.12

import "."

/** The form of one observation. What is wrong stands below its field, and then nothing is stored. */
ColumnLayout {
    id: editor

    /** Of the observation that is changed; empty for a new one. */
    property string observationId
    /** A line for each field that is wrong. */
    property var errors: ({})

    signal finished()

    spacing: Style.gap

    function open(id) {
        observationId = id
        errors = {}
        lateral.model = viewer.observations.laterals()
        const texts = viewer.observations.textsOf(id)
        code.text = texts.code
        distance.text = texts.distance
        clock.text = texts.clock
        angle.text = texts.angle
        quantity.text = texts.quantity
        lateral.currentIndex = indexOfLateral(texts.lateral)
    }

    /** -1 for one that the project does not have. */
    function indexOfLateral(id) {
        for (let i = 0; i < lateral.model.length; i++) {
            if (lateral.model[i].id === id) {
                return i
            }
        }
        return -1
    }

    function save() {
        errors = viewer.observations.save(observationId, {
            code: code.text, distance: distance.text, clock: clock.text, angle: angle.text, quantity: quantity.text,
            lateral: lateral.currentIndex >= 0 ? lateral.model[lateral.currentIndex].id : ""
        })
        if (Object.keys(errors).length === 0) {
            finished()
        }
    }

    function errorOf(field) {
        return errors[field] || ""
    }

    Flickable {
        id: scroll

        Layout.fillWidth: true
        Layout.fillHeight: true
        clip: true
        contentHeight: fields.height
        boundsBehavior: Flickable.StopAtBounds
        ScrollBar.vertical: ScrollBar {}

        Column {
            id: fields

            width: scroll.width
            spacing: Style.gap

            Text {
                text: editor.observationId === "" ? qsTr("New observation") : qsTr("Change the observation")
                color: Style.ink
                font.pixelSize: Style.textSize
                font.weight: Font.DemiBold
            }
            FormField {
                id: code

                objectName: "codeField"
                width: parent.width
                label: qsTr("Code")
                error: editor.errorOf("code")
            }
            FormField {
                id: distance

                objectName: "distanceField"
                width: parent.width
                number: true
                label: qsTr("Distance along the pipe (%1)").arg(viewer.observations.distanceUnit)
                error: editor.errorOf("distance")
            }
            Row {
                width: parent.width
                spacing: Style.gap

                FormField {
                    id: clock

                    objectName: "clockField"
                    width: (parent.width - parent.spacing) / 2
                    number: true
                    label: qsTr("Clock (0 to 12)")
                    error: editor.errorOf("clock")
                }
                FormField {
                    id: angle

                    objectName: "angleField"
                    width: clock.width
                    number: true
                    label: qsTr("Angle (degrees)")
                    error: editor.errorOf("angle")
                }
            }
            FormField {
                id: quantity

                objectName: "quantityField"
                width: parent.width
                number: true
                label: qsTr("Quantity")
                error: editor.errorOf("quantity")
            }
            Column {
                width: parent.width
                spacing: 2

                Text {
                    text: qsTr("Lateral")
                    color: Style.quietInk
                    font.pixelSize: Style.smallTextSize
                }
                ComboBox {
                    id: lateral

                    objectName: "lateralBox"
                    width: parent.width
                    implicitHeight: Style.touch
                    font.pixelSize: Style.textSize
                    textRole: "name"
                    background: Rectangle {
                        radius: Style.radius
                        color: lateral.down ? Style.pressed : Style.paper
                        border.color: editor.errorOf("lateral") !== "" ? Style.alarm : Style.line
                    }
                    delegate: ItemDelegate {
                        width: lateral.width
                        height: Style.touch
                        text: modelData.name
                        font.pixelSize: Style.textSize
                        highlighted: lateral.highlightedIndex === index
                    }
                }
                Text {
                    objectName: "lateralError"
                    width: parent.width
                    visible: text !== ""
                    text: editor.errorOf("lateral")
                    textFormat: Text.PlainText
                    color: Style.alarm
                    font.pixelSize: Style.smallTextSize
                    wrapMode: Text.Wrap
                }
            }
            Text {
                objectName: "formError"
                width: parent.width
                visible: text !== ""
                text: editor.errorOf("form")
                textFormat: Text.PlainText
                color: Style.alarm
                font.pixelSize: Style.smallTextSize
                wrapMode: Text.Wrap
            }
        }
    }

    RowLayout {
        Layout.fillWidth: true
        spacing: Style.gap

        ToolButton {
            objectName: "saveObservationButton"
            Layout.fillWidth: true
            on: true
            text: qsTr("Save")
            onClicked: editor.save()
        }
        ToolButton {
            objectName: "leaveObservationButton"
            Layout.fillWidth: true
            text: qsTr("Cancel")
            onClicked: editor.finished()
        }
    }
}
