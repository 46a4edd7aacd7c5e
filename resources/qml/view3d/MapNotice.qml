import QtQuick 2.12

/** Who made the map, as the host names him; over the scene while the map is seen, in pictures as well. */
Rectangle {
    id: notice

    /** The MapBackground, if there is one. */
    property var map
    /** It takes no more of the width. */
    property real space: 0
    readonly property string maker: map && map.endpoints ? map.endpoints.copyright || "" : ""
    readonly property real edge: 4

    visible: maker !== "" && map.shown
    width: Math.min(space, Math.ceil(words.implicitWidth) + 2 * edge)
    height: words.height + edge
    color: Qt.rgba(1, 1, 1, 0.75)

    Text {
        id: words

        objectName: "mapNoticeText"
        anchors { left: parent.left; right: parent.right; margins: notice.edge; verticalCenter: parent.verticalCenter }
        text: /\u00a9|\(c\)|copyright/i.test(notice.maker) ? notice.maker : "\u00a9 " + notice.maker
        textFormat: Text.PlainText
        color: design.misc.flyingObject.textColor
        font.pixelSize: 11
        font.family: font_Regular.name
        wrapMode: Text.Wrap
    }
}
