import QtQuick 2.12

import "."

/** The projects opened last, to be opened by a tap; one whose folder is gone can be taken off the list. */
Column {
    id: recentList

    readonly property var recent: viewer.desk ? viewer.desk.recent : null

    signal chosen()

    /** Opens it once the tap is over: the list may go away with it. */
    function choose(folder) {
        Qt.callLater(viewer.openFolder, folder)
        chosen()
    }

    spacing: 4
    Component.onCompleted: {
        if (recent)
            recent.refresh()
    }

    Text {
        visible: !!recentList.recent && recentList.recent.count > 0
        text: qsTr("Opened last")
        color: Style.quietInk
        font.pixelSize: Style.smallTextSize
    }

    Repeater {
        model: recentList.recent

        Rectangle {
            objectName: "recent" + index
            width: recentList.width
            height: Math.max(Style.touch, texts.implicitHeight + Style.gap)
            radius: Style.radius
            color: tap.pressed ? Style.pressed : Style.panel

            Column {
                id: texts

                anchors {
                    left: parent.left; right: removal.visible ? removal.left : parent.right
                    margins: 12; verticalCenter: parent.verticalCenter
                }

                Text {
                    width: parent.width
                    text: model.missing ? qsTr("%1 (missing)").arg(model.name) : model.name
                    textFormat: Text.PlainText
                    color: model.missing ? Style.alarm : Style.ink
                    font.pixelSize: Style.textSize
                    elide: Text.ElideMiddle
                }
                Text {
                    width: parent.width
                    text: model.folder
                    textFormat: Text.PlainText
                    color: Style.quietInk
                    font.pixelSize: Style.smallTextSize
                    elide: Text.ElideMiddle
                }
            }

            MouseArea {
                id: tap

                anchors.fill: parent
                enabled: !model.missing
                onClicked: recentList.choose(model.folder)
            }

            ToolButton {
                id: removal

                objectName: "removeRecent" + index
                anchors { right: parent.right; verticalCenter: parent.verticalCenter }
                visible: model.missing
                text: qsTr("Remove")
                onClicked: recentList.recent.remove(model.folder)
            }
        }
    }
}
