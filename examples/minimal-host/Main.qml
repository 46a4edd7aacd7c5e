import QtQuick 2.12
import QtQuick.Window 2.12
import view3d 1.0

Window {
    width: 1000; height: 700; visible: true
    Window3d {
        anchors.fill: parent
        mapWanted: false
        onScene3dChanged: scene3d.camera.setPose(Qt.vector3d(0, 9000, 0), Qt.vector3d(0, 0, 0), Qt.vector3d(0, 0, 1))
    }
}
