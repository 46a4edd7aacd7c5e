import QtQuick 2.12

/** A button of the hidden row of diagnoses; logs its caption. */
Item {
    property alias mouseArea: mouseArea
    property alias caption: label.text

    width: parent.size
    height: parent.size / 2

    Rectangle {
        anchors.fill: parent
        color: "blue"
        opacity: 0.7
    }

    Text {
        id: label

        anchors.centerIn: parent
        horizontalAlignment: Text.AlignHCenter
        color: "white"
        text: "text1"
    }

    MouseArea {
        id: mouseArea

        anchors.fill: parent
        onClicked: console.log(label.text)
    }
}
