import QtQuick 2.12

import "."

/** What each key does. */
ModalCard {
    id: card

    caption: qsTr("Keys")

    Repeater {
        model: [
            ["Ctrl+O", qsTr("open a project")],
            ["1, 2, 3", qsTr("look from the top, in 3D, from the front")],
            ["F", qsTr("the whole project in view")],
            ["+, -", qsTr("nearer, farther")],
            ["Esc", qsTr("cancel, let go what is selected")],
            [qsTr("Del"), qsTr("delete what is selected, after a question")],
            ["F12", qsTr("a picture of the view as PNG")],
            [qsTr("Ctrl+P"), qsTr("a page with the view as PDF")],
            ["F1", qsTr("this card")]
        ]

        Row {
            width: parent.width
            spacing: Style.gap

            Text {
                width: 90
                text: modelData[0]
                color: Style.ink
                font.pixelSize: Style.textSize
                font.weight: Font.DemiBold
            }
            Text {
                width: parent.width - 90 - Style.gap
                text: modelData[1]
                color: Style.ink
                font.pixelSize: Style.textSize
                wrapMode: Text.Wrap
            }
        }
    }

    ToolButton {
        objectName: "closeKeysButton"
        width: parent.width
        text: qsTr("Close")
        onClicked: card.dismissed()
    }
}
