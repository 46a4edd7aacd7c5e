import QtQuick 2.12

/** A zoom button in its corner, as soon as there is a scene to zoom. Expects a window3d around it. */
Loader {
    id: handle

    property bool zoomIn: true
    /** `active` and `enabled`. */
    property var icons
    readonly property var scene3d: window3d.scene3d

    z: parent.z + 1
    active: !!scene3d
    sourceComponent: DragZoom3dButton {
        zoomIn: handle.zoomIn
        screenPointer: window3d.screenPointer
    }
    onLoaded: {
        item.iconActive = icons.active
        item.iconInactive = icons.enabled
    }
}
