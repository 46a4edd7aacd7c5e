import QtQuick 2.12

/** The floors of a building as lines in the front view. */
Item {
    id: floorSet

    /** Heights in metres, each above the floor below. */
    property var floorsModel: []

    function calculateY(index) {
        let height = 0
        for (let i = 0; i <= index; ++i)
            height += Number(floorsModel[i]) || 0 // FloorNav counts what is no number as 0 too
        return height
    }

    anchors.fill: parent

    Repeater {
        model: floorSet.floorsModel

        Floor2d {
            property real yPosition: floorSet.calculateY(index)

            point3D: Qt.vector3d(0, yPosition, 0)
        }
    }
}
