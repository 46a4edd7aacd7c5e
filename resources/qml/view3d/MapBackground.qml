import QtQuick 2.12
import QtLocation 5.12
import QtPositioning 5.12
import com.torvik.view3d 1.0 as Torvik3d
import Torvik.Geo 1.0
import Torvik.Shared 1.0

import "MapMath.js" as MapMath

/** The street map under the transparent scene, kept in line with its camera. Expects window3d and scene3d around it, and
 *  of the host `mapEndpoints` (where tiles and addresses come from) and `ostel` (its device), each if there is one. */
Item {
    id: mapContainer

    property alias shown: map.visible
    property alias ready: map.mapReady
    /** The map then moves alone, without the scene. */
    property bool navigationMode: false
    property var lastMapCenter
    property real gridVisibilityLimit: window3d.gridVisibilityLimit
    property var defaultCenter: QtPositioning.coordinate(47.6802960, 10.3267630)
    property var currentGpsLatitude: isGpsWorking() ? ostel.system.gpsData.latitude : undefined
    property var currentGpsLongitude: isGpsWorking() ? ostel.system.gpsData.longitude : undefined
    property var lastGpsLatitude
    property var lastGpsLongitude
    property string valueStreet
    property string valueCity
    property string valueCountry
    property alias buildingUnderConstruction: drawing.underConstruction
    property alias buildings: drawing.buildings

    readonly property var endpoints: typeof mapEndpoints !== "undefined" && mapEndpoints ? mapEndpoints : ({})
    readonly property var camera: scene3d.camera
    /** Where the scene was tied to the earth last. */
    property var lastTie
    readonly property var activeProject: belmora.appStateData.activeProject

    signal locationReceived(var location)
    signal geocodeModelStatusChanged(var geocodeModelStatus, var geocodeModelErrorCode)
    /** A search was answered, with no hit. */
    signal nothingFound()

    anchors.fill: parent
    clip: true

    // Each change of the project unties the scene, before or after this is told.
    onActiveProjectChanged: Qt.callLater(tieEmptyScene)
    onNavigationModeChanged: {
        if (navigationMode) {
            lastMapCenter = currentCenter()
            map.center = lastMapCenter
        } else if (lastMapCenter) {
            map.center = lastMapCenter
            refresh()
        }
    }

    function isGpsWorking() {
        if (typeof ostel === "undefined" || !ostel || !ostel.system || !ostel.system.gpsEnabled) {
            return false
        }
        const data = ostel.system.gpsData
        return !!data && ["2D Fix", "3D Fix", "Estimated Fix"].indexOf(data.status) >= 0
    }

    function initGeoProjector(coordinate, altitude) {
        const place = coordinate || currentCenter()
        const height = altitude === undefined || Number.isNaN(altitude) ? 0.0 : altitude
        scene3d.sceneRoot.safeGeoProjectorInitFromMap(place.latitude, place.longitude, height)
    }

    /** After a project the scene stays where that one was; the next one ties it anew. */
    function tieEmptyScene() {
        if (!activeProject.valid && !GeoProjector.initialized) {
            initGeoProjector(lastTie)
        }
    }

    function resetGeoProjector(coordinate, altitude) {
        camera.scheduleDelayedAnimation(function() {
            const place = coordinate || currentCenter()
            GeoProjector.deinit()
            initGeoProjector(place, altitude)
        })
    }

    /** An empty scene goes to the new place; one with content stays where it is tied. */
    function resetGeoProjectorIfNoNods(coordinate) {
        const root = scene3d.sceneRoot
        const plan = !!Torvik3d.SceneEntities.planRenderable || (!!root.planLoader && root.planLoader.planLoading)
        if (root.sceneHasNodesWithPosition() || root.sceneHasVirtualNodesWithPosition() || plan) {
            return
        }
        resetGeoProjector(coordinate)
        AppSettingsLastAddress.saveLatAndLongPosition("UNDEFINED_STREET", "UNDEFINED_CITY", coordinate.latitude,
                                                      coordinate.longitude)
    }

    function resetPosition() {
        moveCameraToPosition(QtPositioning.coordinate(GeoProjector.latit, GeoProjector.longit))
        // A camera that stands there already doesn't move the map.
        refresh()
    }

    function refresh() {
        map.setupAllViewParams()
    }

    function gotoAddress(address) {
        if (address) {
            geocodeModel.ask(address, true)
        }
    }

    function gotoPosition(coordinate) {
        if (!MapMath.isPlace(coordinate)) {
            return
        }
        if (navigationMode) {
            map.center = coordinate
            geocodeModel.ask(coordinate, false)
        } else {
            goAlong(coordinate)
        }
    }

    /** With the scene. */
    function goAlong(coordinate) {
        // What is left of a running animation would come on top of the way.
        camera.animScheduler.completeAll()
        moveCameraToPosition(coordinate)
        resetGeoProjectorIfNoNods(coordinate)
    }

    /** As from the front: such a line of sight meets the ground nowhere, or far beyond what is seen. */
    function isLevel() {
        return Math.abs(camera.viewVector.y) < 0.01 * camera.viewVector.length()
    }

    function lookedAt() {
        return isLevel() ? camera.viewCenter : camera.groundCenter()
    }

    function moveCameraToPosition(coordinate) {
        if (!MapMath.isPlace(coordinate) || !GeoProjector.initialized) {
            return
        }
        const target = GeoProjector.sceneCoordsFromGeoCoords(coordinate.latitude, coordinate.longitude)
        const from = lookedAt()
        const positionDiff = Qt.vector3d(target.x - from.x, isLevel() ? 0 : -from.y, target.z - from.z)
        camera.animScheduler.completeAll()
        const pose = camera.getSafeTranslation(positionDiff)
        if (pose) {
            camera.viewCenter = pose.viewCenter
            camera.position = pose.position
            camera.upVector = pose.upVector
        }
    }

    function requestAddress(position) {
        geocodeModel.ask(toCoordinateWrapper(position, false), false)
    }

    /** The place under a pixel of this item. */
    function toCoordinateWrapper(position, clipToViewPort) {
        if (sceneLeads()) {
            const ground = Utils3D.pointScreenToWorldGround(position.x, position.y, camera, scene3d.width,
                                                            scene3d.height)
            return placeOnGround(ground, Qt.vector3d(0, 1, 0))
        }
        return map.toCoordinate(map.mapFromItem(mapContainer, position.x, position.y), clipToViewPort)
    }

    /** The pixel of this item at which a place is seen. */
    function fromCoordinateWrapper(coordinate) {
        const onSheet = map.fromCoordinate(coordinate, false)
        return map.mapToItem(mapContainer, onSheet.x, onSheet.y)
    }

    function cancelRequest() {
        geocodeModel.reset()
    }

    function setupZoom() {
        if (!map.visible || mapContainer.width <= 0) {
            return
        }
        const x = scene3d.width / 2
        const y = scene3d.height / 2
        const left = Utils3D.pointScreenToWorldGround(x - 20, y, camera, scene3d.width, scene3d.height)
        const right = Utils3D.pointScreenToWorldGround(x + 20, y, camera, scene3d.width, scene3d.height)
        map.metersPerPixelLatitude = left.minus(right).length() / 40
        map.zoomToMetersPerPixelLatitude()
    }

    function setupAnglesAndViewVecLen() {
        map.bearing = MapMath.bearing(camera.viewVector, camera.upVector)
        map.calculatedTilt = MapMath.tilt(camera.viewVector)
        camera.updateViewVectorLength()
    }

    function placeOnGround(point, ray) {
        const place = GeoProjector.geoCoordsDegFromPointOnGround(point.x, point.y, point.z, ray)
        return QtPositioning.coordinate(place.y, place.x)
    }

    function viewedPlace() {
        return placeOnGround(camera.viewCenter, camera.position.minus(camera.viewCenter))
    }

    /** A hidden map stays where it was, since it would load tiles all the same. */
    function sceneLeads() {
        return !map.visible && !navigationMode && GeoProjector.initialized
    }

    /** Of the map, or where it would be if it were seen. */
    function currentCenter() {
        return sceneLeads() ? viewedPlace() : QtPositioning.coordinate(map.center.latitude, map.center.longitude)
    }

    function setupTranslation() {
        if (!navigationMode && map.visible && GeoProjector.initialized) {
            map.center = viewedPlace()
        }
    }

    function addVertex(point) { drawing.addVertex(map.mapFromItem(mapContainer, point.x, point.y)) }
    function startBuilding() { drawing.start() }
    function finishBuilding() { drawing.finish() }
    function startVertexModification() { drawing.showAllVertices() }
    function finishVertexModification() { drawing.hideAllVertices() }
    function startBuildingRemoval() { drawing.setRemovalEnabled(true) }
    function finishBuildingRemoval() { drawing.setRemovalEnabled(false) }
    function removeAllBuildings() { drawing.removeAll() }
    function removeBuilding(building) { drawing.remove(building) }
    function hideAllVertices() { drawing.hideAllVertices() }

    MapDrawing {
        id: drawing

        map: map
    }

    MapPlugin {
        id: mapPlugin

        endpoints: mapContainer.endpoints
    }

    Map {
        id: map

        property real metersPerPixelLatitude: 1.0
        property real calculatedTilt: 0

        function setupAllViewParams() {
            map.fieldOfView = camera.fieldOfView
            setupTranslation()
            setupAnglesAndViewVecLen()
            setupZoom()
        }

        function translateCenter(metersNorth, metersEast) {
            center = center.atDistanceAndAzimuth(Math.sqrt(metersNorth * metersNorth + metersEast * metersEast),
                                                 MapMath.azimuth(metersNorth, metersEast))
        }

        function zoomToMetersPerPixelLatitude() {
            // Beyond the finest tiles the plug-in would show nothing; the sheet enlarges them.
            zoomLevel = Math.min(maximumZoomLevel, MapMath.zoomLevel(center.latitude, metersPerPixelLatitude))
        }

        /** The provider that the host has chosen, not the one that the plug-in would take. */
        function chooseProvider() {
            for (let i = 0; i < supportedMapTypes.length; i++) {
                if (supportedMapTypes[i].style === MapType.CustomMap) {
                    activeMapType = supportedMapTypes[i]
                }
            }
        }

        objectName: "map"
        plugin: mapPlugin
        zoomLevel: 17
        center: defaultCenter
        fieldOfView: window3d.cameraFOV
        visible: window3d.mapVisible && calculatedTilt <= maximumTilt
        bearing: 0
        // It stays flat: this lens is narrower than any that the plug-in tilts with. The sheet tilts it.
        tilt: 0
        width: sheet.width
        height: sheet.height
        transform: Matrix4x4 {
            matrix: sheet.matrix
        }
        gesture.enabled: false
        copyrightsVisible: false

        onVisibleChanged: {
            if (visible) {
                setupAllViewParams()
            }
        }
        onSupportedMapTypesChanged: chooseProvider()
        onMaximumZoomLevelChanged: zoomToMetersPerPixelLatitude()

        Component.onCompleted: {
            chooseProvider()
            zoomToMetersPerPixelLatitude()
            initGeoProjector()
            setupAllViewParams()
        }
    }

    Torvik3d.MapSheet {
        id: sheet

        // To cover a view that leaves it behind, a map that stands still would grow and grow.
        camera: map.visible ? mapContainer.camera : null
        screenWidth: scene3d.width
        screenHeight: scene3d.height
        place: Qt.point(map.center.longitude, map.center.latitude)
        zoomLevel: MapMath.drawnLevel(map.zoomLevel)
        bearing: map.bearing
        adrift: mapContainer.navigationMode || gestureMapTrans.initialCenter !== undefined
    }

    MapSearch {
        id: geocodeModel

        plugin: mapPlugin
        onFound: {
            locationReceived(location)
            if (!translateMap || !MapMath.isPlace(location.coordinate)) {
                return
            }
            if (navigationMode) {
                map.center = location.coordinate
            } else {
                goAlong(location.coordinate)
            }
            refresh()
        }
        onFoundNothing: nothingFound()
        onStatusChanged: geocodeModelStatusChanged(status, error)
    }

    Connections {
        id: synchroActions

        target: mapContainer.camera

        function onViewVectorLengthChanged() {
            window3d.gridIsFarAwayFromCamera = camera.viewVectorLength > gridVisibilityLimit
            setupZoom()
        }
        function onViewPlusUpVectorChanged() {
            setupAnglesAndViewVecLen()
            // A camera that jumps comes here last; between its steps the middle of the view may lie askew.
            setupZoom()
        }
        function onViewCenterChanged() {
            if (scene3d.cameraController.controlPlanes === Torvik3d.CameraController.All) {
                setupTranslation()
            }
        }
        function onProjectionMatrixChanged() {
            if (GeoProjector.initialized) {
                map.setupAllViewParams()
            }
        }
        function onFieldOfViewChanged() {
            map.fieldOfView = camera.fieldOfView
        }
    }

    Connections {
        id: gestureMapTrans

        property var initialCenter

        target: scene3d.cameraController

        function onMapTranslation(trans) {
            if (initialCenter === undefined) {
                // A copy: the map's own value would go along with the map.
                initialCenter = QtPositioning.coordinate(map.center.latitude, map.center.longitude)
            }
            map.translateCenter(trans.z, -trans.x)
        }
        function onMapTranslationFinished() {
            finish()
        }
        // The release of such a drag is told to nobody.
        function onControlPlanesChanged() {
            finish()
        }
        function finish() {
            const start = initialCenter
            if (start !== undefined && !navigationMode) {
                GeoProjector.updateByMapTranslation(start.latitude, start.longitude, map.center.latitude,
                                                    map.center.longitude)
            }
            initialCenter = undefined
        }
    }

    Connections {
        target: GeoProjector

        function onGeoLocationChanged() {
            lastTie = QtPositioning.coordinate(GeoProjector.latit, GeoProjector.longit)
        }
        function onMapResetRequest() {
            resetPosition()
        }
    }

    Connections {
        target: scene3d

        function onWidthChanged() {
            setupZoom()
        }
    }

    Connections {
        target: window3d
        ignoreUnknownSignals: true

        function onResized() {
            map.setupAllViewParams()
        }
    }
}
