import QtQuick 2.12

/** One of the control row's buttons. */
Rectangle {
    id: box

    property alias text: label.text
    property alias textColor: label.color
    readonly property alias textWidth: label.implicitWidth

    signal tapped()

    height: 40
    color: "gray"
    opacity: 0.6

    Text {
        id: label

        anchors.centerIn: parent
        color: "black"
    }

    MouseArea {
        anchors.fill: parent
        onClicked: box.tapped()
    }
}
