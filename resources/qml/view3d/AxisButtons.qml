import QtQuick 2.12

/** Lets drags move things on their level, or up and down only. Out of service at present. */
Item {
    width: 40
    height: 100
    enabled: false
    visible: false

    ButtonView3d {
        id: axisLockXZ

        objectName: "axisLockXZ"
        width: parent.width
        height: width
        iconClicked: design.icons.positionMode.active
        iconNormal: design.icons.positionMode.disabled
        modeButtonMode: true
        state: GlobalNav.axisX && !GlobalNav.axisY && GlobalNav.axisZ ? "modeSet" : "normal"
        clickAction: function() {
            GlobalNav.axisX = true
            GlobalNav.axisZ = true
            GlobalNav.axisY = false
        }
    }

    ButtonView3d {
        objectName: "axisLockY"
        anchors { top: axisLockXZ.bottom; topMargin: 5 }
        width: parent.width
        height: width
        iconClicked: design.icons.positionMode.active
        iconNormal: design.icons.positionMode.disabled
        modeButtonMode: true
        state: !GlobalNav.axisX && GlobalNav.axisY && !GlobalNav.axisZ ? "modeSet" : "normal"
        clickAction: function() {
            GlobalNav.axisX = false
            GlobalNav.axisZ = false
            GlobalNav.axisY = true
        }
    }
}
