import QtQuick 2.12

/** A cross on the screen that a finger can drag. Its place is that of its centre. */
Item {
    id: pointer

    readonly property point center: Qt.point(x + width / 2, y + height / 2)

    signal dragFinished()

    function moveTo(centerX, centerY) {
        x = centerX - width / 2
        y = centerY - height / 2
    }

    width: 64
    height: 64

    Rectangle {
        anchors.fill: parent
        radius: width / 2
        color: "transparent"
        border { width: 2; color: Qt.rgba(0.2, 1, 0, 1) }
    }

    Rectangle {
        anchors.centerIn: parent
        width: parent.width
        height: 2
        color: Qt.rgba(0.2, 1, 0, 1)
    }

    Rectangle {
        anchors.centerIn: parent
        width: 2
        height: parent.height
        color: Qt.rgba(0.2, 1, 0, 1)
    }

    MouseArea {
        anchors.fill: parent
        drag { target: pointer; threshold: 0; smoothed: false }
        onReleased: pointer.dragFinished()
    }
}
