import QtQuick 2.12
import QtQuick.Controls 2.12

import "."

/** The project as a tree: a tap on a name goes to the object, one on the mark before it folds and unfolds. */
ListView {
    id: tree

    readonly property int indent: 16

    objectName: "tree"
    clip: true
    model: viewer.desk ? viewer.desk.tree : null
    boundsBehavior: Flickable.StopAtBounds
    ScrollBar.vertical: ScrollBar {}

    delegate: Rectangle {
        readonly property bool marked: viewer.currentIds.indexOf(model.objectId) >= 0

        width: tree.width
        height: Style.touch
        radius: Style.radius
        color: marked || tap.pressed ? Style.pressed : "transparent"

        Text {
            id: mark

            x: model.depth * tree.indent
            width: Style.touch * 0.8
            height: parent.height
            text: !model.foldable ? "" : model.unfolded ? "\u25be" : "\u25b8"
            color: Style.accent
            font.pixelSize: 18
            horizontalAlignment: Text.AlignHCenter
            verticalAlignment: Text.AlignVCenter
        }
        Text {
            anchors { left: mark.right; right: parent.right; verticalCenter: parent.verticalCenter }
            text: model.text
            textFormat: Text.PlainText
            color: Style.ink
            font.pixelSize: Style.textSize
            elide: Text.ElideRight
        }

        MouseArea {
            id: tap

            anchors.fill: parent
            onClicked: {
                if (model.foldable && (mouse.x < mark.x + mark.width || model.depth < 2))
                    tree.model.toggle(index)
                else
                    viewer.desk.goTo(model.objectId)
            }
        }
    }
}
