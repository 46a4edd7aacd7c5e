import QtQuick 2.12

/** The drawing tool for simple buildings on the map: one at a time is under construction, the others are kept. */
QtObject {
    id: drawing

    property var map
    property var underConstruction
    property var buildings: []

    property Component buildingComponent: Component {
        MapBuilding {}
    }

    function start() {
        finish()
        underConstruction = buildingComponent.createObject(map)
    }

    /** `point` is one of the map's pixels. */
    function addVertex(point) {
        if (underConstruction) {
            underConstruction.addPoint(point)
        }
    }

    function finish() {
        const building = underConstruction
        underConstruction = undefined
        if (!building) {
            return
        }
        if (building.isVoid()) {
            discard(building)
        } else {
            buildings = buildings.concat([building])
            building.hidePoints()
        }
    }

    function showAllVertices() {
        buildings.forEach(function(building) { building.showPoints() })
    }

    function hideAllVertices() {
        buildings.forEach(function(building) { building.hidePoints() })
    }

    function setRemovalEnabled(enabled) {
        buildings.forEach(function(building) { building.removalEnabled = enabled })
    }

    function removeAll() {
        buildings.forEach(discard)
        buildings = []
    }

    function remove(building) {
        if (underConstruction === building) {
            underConstruction = undefined
        }
        buildings = buildings.filter(function(other) { return other !== building })
        discard(building)
    }

    function discard(building) {
        map.removeMapItem(building.shape)
        map.removeMapItem(building.helperShape)
        building.destroy()
    }
}
