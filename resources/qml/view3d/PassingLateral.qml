import QtQuick 2.12
import com.torvik.view3d 1.0 as Torvik3d

/** The button for the lateral that the inspection vehicle passes, beside the vehicle. Expects a window3d around it. */
LateralQuickAccessButton {
    id: lateralQuickAccess

    property bool lateralInProximity: false
    readonly property real farthest: 200.0
    readonly property bool inspecting: belmora.appStateData.activeInspection.valid

    function verifyVisibility() {
        if (!window3d.scene3d || window3d.screenshotPending)
            return false
        const camera = window3d.scene3d.camera
        if (camera.viewVectorLength > farthest)
            return false
        return lateralInProximity
               && (camera.viewType === Torvik3d.CameraController.View3d || window3d.splitViewMode)
    }

    x: GlobalNav.pipeProximityPos.x
    y: GlobalNav.pipeProximityPos.y
    opacity: 0.7
    visible: verifyVisibility()
    // A vehicle that is gone passes nothing. The lateral stays, since a video's end leads to it later.
    onInspectingChanged: {
        if (!inspecting)
            lateralInProximity = false
    }

    Connections {
        target: GlobalNav
        function onLateralInProximity(qmlDomainObject, entity) {
            lateralQuickAccess.text = qmlDomainObject.queryName()
            lateralQuickAccess.lateralInProximity = true
            lateralQuickAccess.selectedLateral = qmlDomainObject
        }
        function onLateralNotInProximity() {
            lateralQuickAccess.text = ""
            lateralQuickAccess.lateralInProximity = false
            lateralQuickAccess.selectedLateral = null
        }
    }
}
