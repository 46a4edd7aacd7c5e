import QtQuick 2.12
import QtQuick.Controls 2.12

import "."

/** All that the project knows of the selected object. */
ListView {
    id: details

    objectName: "details"
    clip: true
    model: viewer.desk ? viewer.desk.details : null
    boundsBehavior: Flickable.StopAtBounds
    ScrollBar.vertical: ScrollBar {}

    header: Text {
        objectName: "detailsTitle"
        width: details.width
        height: implicitHeight + Style.gap
        text: details.count > 0 ? details.model.title : qsTr("Select an object, here or in the scene")
        textFormat: Text.PlainText
        color: details.count > 0 ? Style.ink : Style.quietInk
        font.pixelSize: Style.textSize
        font.weight: Font.DemiBold
        wrapMode: Text.Wrap
    }

    delegate: Item {
        width: details.width
        height: value.height + Style.gap

        Text {
            width: parent.width * 0.45
            text: model.label
            textFormat: Text.PlainText
            color: Style.quietInk
            font.pixelSize: Style.smallTextSize
            wrapMode: Text.Wrap
        }
        Text {
            id: value

            x: parent.width * 0.47
            width: parent.width * 0.53
            text: model.value !== "" ? model.value : "\u2013"
            textFormat: Text.PlainText
            color: Style.ink
            font.pixelSize: Style.smallTextSize
            wrapMode: Text.Wrap
        }
    }
}
