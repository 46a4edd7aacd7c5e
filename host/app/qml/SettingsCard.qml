import QtQuick 2.12

import "."

/** Language and units, each of which acts at once. */
ModalCard {
    id: card

    /** Another card is to stand in place of this one. */
    signal cardWanted(string name)

    caption: qsTr("Settings")

    Text {
        text: qsTr("Language")
        color: Style.quietInk
        font.pixelSize: Style.smallTextSize
    }
    Row {
        width: parent.width
        spacing: Style.gap

        Repeater {
            model: language.choices

            ToolButton {
                objectName: "language_" + modelData.code
                width: (parent.width - parent.spacing) / 2
                text: modelData.name
                on: language.code === modelData.code
                onClicked: language.code = modelData.code
            }
        }
    }

    Text {
        text: qsTr("Lengths, until a project that says its own is opened")
        color: Style.quietInk
        font.pixelSize: Style.smallTextSize
        width: parent.width
        wrapMode: Text.Wrap
    }
    Row {
        width: parent.width
        spacing: Style.gap

        ToolButton {
            objectName: "metricButton"
            width: (parent.width - parent.spacing) / 2
            text: qsTr("Metric (m)")
            on: !units.imperial
            onClicked: units.imperial = false
        }
        ToolButton {
            objectName: "imperialButton"
            width: (parent.width - parent.spacing) / 2
            text: qsTr("Imperial (ft)")
            on: units.imperial
            onClicked: units.imperial = true
        }
    }

    ToolButton {
        objectName: "keysButton"
        width: parent.width
        text: qsTr("Keys")
        onClicked: card.cardWanted("KeysCard")
    }
    ToolButton {
        objectName: "closeSettingsButton"
        width: parent.width
        text: qsTr("Close")
        onClicked: card.dismissed()
    }
}
