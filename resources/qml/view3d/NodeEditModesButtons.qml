import QtQuick 2.12

/** Chooses whether a finger moves or turns a node. Out of service at first. */
Rectangle {
    width: 40
    height: 90
    radius: 5
    color: "gray"
    visible: false
    enabled: false

    ButtonView3d {
        id: btnTranslate

        objectName: "btnTranslate"
        anchors { top: parent.top; topMargin: -6; horizontalCenter: parent.horizontalCenter }
        iconNormal: design.icons.positionMode.disabled
        iconClicked: design.icons.positionMode.active
        modeButtonMode: true
        state: GlobalNav.translateMode ? "clicked" : "normal"
        clickAction: function() {
            GlobalNav.translateMode = true
        }
    }

    ButtonView3d {
        objectName: "btnRotate"
        anchors { top: btnTranslate.bottom; topMargin: -3; horizontalCenter: parent.horizontalCenter }
        iconNormal: design.icons.rotationMode.disabled
        iconClicked: design.icons.rotationMode.active
        modeButtonMode: true
        state: GlobalNav.translateMode ? "normal" : "clicked"
        clickAction: function() {
            GlobalNav.translateMode = false
        }
    }
}
