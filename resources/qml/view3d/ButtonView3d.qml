import QtQuick 2.12

/** Square button of the view, with an icon at rest and one while it is on. Expects a window3d around it. */
Item {
    id: btn3D

    property var iconClicked
    property url iconNormal
    /** Milliseconds for which a click shows. */
    property real duration: 150
    /** Called at a click. */
    property var clickAction
    /** Of a button that stands for a mode: the mode. Its state is whoever places it to set. */
    property var modeButtonMode
    /** "normal", "clicked" or "modeSet". */
    property alias state: image.state

    width: 64
    height: 64

    Rectangle {
        anchors.fill: parent
        color: design.misc.flyingObject.backgroungColor
        opacity: design.misc.flyingObject.backgroungOpacity
    }

    Image {
        id: image

        anchors.fill: parent
        fillMode: Image.PreserveAspectFit
        state: btn3D.modeButtonMode !== undefined && btn3D.modeButtonMode === window3d.mode3dType ? "modeSet"
                                                                                                  : "normal"
        states: [
            State {
                name: "clicked"
                PropertyChanges { target: image; source: btn3D.iconClicked ? btn3D.iconClicked : "" }
            },
            State {
                name: "modeSet"
                PropertyChanges { target: image; source: btn3D.iconClicked ? btn3D.iconClicked : "" }
            },
            State {
                name: "normal"
                PropertyChanges { target: image; source: btn3D.iconNormal }
            }
        ]
    }

    MouseArea {
        anchors.fill: parent
        onClicked: {
            if (!btn3D.clickAction) {
                return
            }
            if (btn3D.modeButtonMode === undefined) {
                showClick.restart()
            }
            btn3D.clickAction()
        }
    }

    SequentialAnimation {
        id: showClick

        PropertyAction { target: image; property: "state"; value: "clicked" }
        PauseAnimation { duration: btn3D.duration }
        PropertyAction { target: image; property: "state"; value: "normal" }
    }
}
