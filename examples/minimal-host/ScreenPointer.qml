import QtQuick 2.12
Rectangle {
    id: pointer

    readonly property point center: Qt.point(x + width / 2, y + height / 2)
    signal dragFinished()
    function moveTo(centerX, centerY) {
        x = centerX - width / 2
        y = centerY - height / 2
    }
    width: 40; height: 40; radius: 20; color: "transparent"; border.color: "green"
    MouseArea { anchors.fill: parent; drag.target: pointer; onReleased: pointer.dragFinished() }
}
