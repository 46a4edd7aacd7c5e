import QtQuick 2.12

import "."
import "InputScreens.js" as InputScreens

/** An input screen, as InputScreens describes it. What is wrong stands below its field, and nothing is taken until all
 *  of it is right. */
ModalCard {
    id: form

    property var description: ({ "rows": [] })
    property var errors: []

    signal accepted(var result)

    function texts() {
        const found = []
        for (let i = 0; i < fields.count; ++i)
            found.push(fields.itemAt(i).text)
        return found
    }

    function accept() {
        errors = description.check(texts())
        if (errors.every(function(error) { return !error }))
            accepted(description.result(texts()))
    }

    function fill() {
        const values = description.fill()
        for (let i = 0; i < fields.count; ++i)
            fields.itemAt(i).text = values[i]
    }

    caption: description.caption
    Component.onCompleted: {
        if (fields.count > 0)
            fields.itemAt(0).takeFocus()
    }

    Repeater {
        id: fields

        model: form.description.rows

        FormField {
            objectName: "inputField" + index
            width: parent.width
            label: modelData.labelText
            text: modelData.inputText
            number: !!modelData.number
            error: form.errors[index] || ""
            onAccepted: form.accept()
        }
    }

    ToolButton {
        objectName: "fillButton"
        width: parent.width
        visible: !!form.description.fillText
        text: form.description.fillText || ""
        onClicked: form.fill()
    }

    Row {
        width: parent.width
        spacing: Style.gap

        ToolButton {
            objectName: "acceptButton"
            width: (parent.width - parent.spacing) / 2
            on: true
            text: qsTr("OK")
            onClicked: form.accept()
        }
        ToolButton {
            objectName: "cancelButton"
            width: (parent.width - parent.spacing) / 2
            text: qsTr("Cancel")
            onClicked: form.dismissed()
        }
    }
}
