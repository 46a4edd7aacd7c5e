import QtQuick 2.12

import "."

/** A card in the middle of the window; what is behind it can neither be seen well nor touched. */
Item {
    id: modal

    default property alias content: column.data
    property string caption

    signal dismissed()

    anchors.fill: parent

    Rectangle {
        anchors.fill: parent
        color: Style.ink
        opacity: 0.45
    }

    MouseArea {
        anchors.fill: parent
        hoverEnabled: true
        onWheel: wheel.accepted = true
    }

    Rectangle {
        anchors.centerIn: parent
        width: Math.min(parent.width - 4 * Style.gap, 460)
        height: Math.min(parent.height - 4 * Style.gap, column.height + 4 * Style.gap)
        radius: Style.radius
        color: Style.paper
        clip: true

        Flickable {
            anchors { fill: parent; margins: 2 * Style.gap }
            contentHeight: column.height
            boundsBehavior: Flickable.StopAtBounds

            Column {
                id: column

                width: parent.width
                spacing: Style.gap

                Text {
                    objectName: "modalCaption"
                    width: parent.width
                    text: modal.caption
                    textFormat: Text.PlainText
                    color: Style.ink
                    font.pixelSize: Style.textSize
                    font.weight: Font.DemiBold
                    wrapMode: Text.Wrap
                }
            }
        }
    }

    Keys.onEscapePressed: dismissed()
}
