import QtQuick 2.12
import QtQuick.Window 2.12

/** The application's window. */
Window {
    property alias scene: mainView.scene
    property alias window3d: mainView.window3d
    property alias view: mainView

    width: 1280
    height: 800
    minimumWidth: 360
    minimumHeight: 400
    visible: true
    title: viewer.projectName !== "" ? viewer.projectName + " - kxviewer" : "kxviewer"

    MainView {
        id: mainView

        anchors.fill: parent
    }
}
