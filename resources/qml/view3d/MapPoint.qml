import QtQuick 2.12
import QtLocation 5.12

/** A vertex of a building on the map: a circle that is dragged, and deleted by a double click. Has to be added to the map
 *  as its `shape`. */
Item {
    id: root

    property alias shape: circle
    property alias mouseArea: area
    /** Told of moves (movePoint) and, if it has the function, of a wish to delete (deletePoint). */
    property var controlledObject

    MapQuickItem {
        id: circle

        property real radius: 10.0

        anchorPoint: Qt.point(radius, radius)
        sourceItem: Rectangle {
            width: 2 * circle.radius
            height: 2 * circle.radius
            radius: circle.radius
            color: "white"
            border.width: 2
            border.color: "grey"
        }

        onCoordinateChanged: {
            if (root.controlledObject) {
                root.controlledObject.movePoint(root)
            }
        }

        MouseArea {
            id: area

            anchors.fill: parent
            drag.target: circle
            onDoubleClicked: {
                if (root.controlledObject && root.controlledObject.deletePoint) {
                    root.controlledObject.deletePoint(root)
                }
            }
        }
    }
}
