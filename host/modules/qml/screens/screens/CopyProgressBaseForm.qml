import QtQuick 2.12

/** A screen that shows how far something with a file has come. Its commands are laid over it by whoever derives. */
Item {
    id: form

    property string captionText
    property string labelText
    property string elementName
    /** Per cent. While there is no word of it yet, a bar that runs to and fro says that something goes on. */
    property int progress: 0

    anchors.fill: parent

    Rectangle {
        anchors.fill: parent
        color: design.misc.flyingObject.textColor
        opacity: 0.45
    }

    MouseArea {
        anchors.fill: parent
        hoverEnabled: true
        onWheel: wheel.accepted = true
    }

    Rectangle {
        id: card

        readonly property int margin: 16

        anchors.centerIn: parent
        width: Math.min(parent.width - 2 * margin, 460)
        // The commands stand in the lower part.
        height: texts.height + 2 * margin + 56
        radius: 6
        color: design.misc.flyingObject.backgroungColor

        Column {
            id: texts

            anchors { left: parent.left; right: parent.right; top: parent.top; margins: card.margin }
            spacing: 8

            Text {
                objectName: "progressCaption"
                width: parent.width
                text: form.captionText
                textFormat: Text.PlainText
                color: design.misc.flyingObject.textColor
                font { pixelSize: design.misc.thumbnailItem.fontSize; weight: Font.DemiBold }
                wrapMode: Text.Wrap
            }
            Text {
                objectName: "progressLabel"
                width: parent.width
                text: form.labelText + " " + form.elementName
                textFormat: Text.PlainText
                color: design.misc.flyingObject.textColor
                font.pixelSize: design.misc.flyingObject.fontSize
                wrapMode: Text.WrapAnywhere
            }
            Rectangle {
                id: track

                objectName: "progressTrack"
                width: parent.width
                height: 6
                radius: 3
                color: "#d9d5ce"
                clip: true

                Rectangle {
                    id: bar

                    property real place: 0

                    x: form.progress > 0 ? 0 : place * (track.width - width)
                    width: form.progress > 0 ? track.width * Math.min(form.progress, 100) / 100 : track.width / 4
                    height: parent.height
                    radius: parent.radius
                    color: "#0b6e77"

                    SequentialAnimation on place {
                        running: form.progress <= 0 && form.visible
                        loops: Animation.Infinite

                        NumberAnimation { to: 1; duration: 900; easing.type: Easing.InOutQuad }
                        NumberAnimation { to: 0; duration: 900; easing.type: Easing.InOutQuad }
                    }
                }
            }
        }
    }
}
