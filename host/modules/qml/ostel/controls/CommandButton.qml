import QtQuick 2.12
import QtQuick.Controls 2.12

/** A button of a screen's commands. Without a text it keeps its place and shows nothing. */
AbstractButton {
    id: button

    implicitWidth: Math.max(120, label.implicitWidth + 24)
    implicitHeight: Raster.buttonHeight
    opacity: text === "" ? 0 : enabled ? 1 : 0.45
    hoverEnabled: false

    contentItem: Text {
        id: label

        text: button.text
        color: design.misc.flyingObject.textColor
        font.pixelSize: design.misc.flyingObject.fontSize + 2
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
    }

    background: Rectangle {
        radius: 6
        color: button.down ? "#e2ded7" : design.misc.flyingObject.backgroungColor
        border { width: 1; color: "#d9d5ce" }
    }
}
