import QtQuick 2.12

/** What the camera expects of the window around it. Its id has to be window3d. */
Item {
    property real cameraFOV: 3
    property int mode3dType: 1
    property bool gridVisible: true
    property bool gridDisabled: false
    property bool gridIsFarAwayFromCamera: false
    property bool screenshotPending: false
    property bool splitViewMode: false
    property real sceneTransparency: 1

    signal beforeSplitViewModeChanged()

    width: 600
    height: 400
}
