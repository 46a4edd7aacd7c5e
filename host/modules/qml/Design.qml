import QtQuick 2.12

/** The style tree that the view reads under the name "design". */
QtObject {
    readonly property QtObject misc: QtObject {
        readonly property QtObject manholeMaterial: QtObject {
            readonly property color coolColor: Qt.rgba(0.16, 0.13, 0.12, 1)
            readonly property color warmColor: Qt.rgba(0.80, 0.58, 0.36, 1)
        }
        readonly property QtObject flyingObject: QtObject {
            readonly property color backgroungColor: "#fbfaf8"
            readonly property real backgroungOpacity: 0.6
            readonly property color textColor: "#23282d"
            readonly property int fontSize: 13
        }
        readonly property QtObject thumbnailItem: QtObject {
            readonly property int fontSize: 16
        }
    }

    readonly property QtObject icons: QtObject {
        readonly property QtObject positionMode: QtObject {
            readonly property url active: "qrc:/icons/position-mode-active.png"
            readonly property url disabled: "qrc:/icons/position-mode.png"
        }
        readonly property QtObject rotationMode: QtObject {
            readonly property url active: "qrc:/icons/rotation-mode-active.png"
            readonly property url disabled: "qrc:/icons/rotation-mode.png"
        }
        readonly property QtObject compass: QtObject {
            readonly property url active: "qrc:/icons/compass-active.png"
            readonly property url enabled: "qrc:/icons/compass.png"
        }
        readonly property QtObject buttonToggleFullSplitPipeViewscreen: QtObject {
            readonly property url active: "qrc:/icons/split-view-active.png"
            readonly property url enabled: "qrc:/icons/split-view.png"
        }
        readonly property QtObject buttonToggleRotationTranslationPipeViewscreen: QtObject {
            readonly property url active: "qrc:/icons/turn-or-move-active.png"
            readonly property url enabled: "qrc:/icons/turn-or-move.png"
        }
        readonly property QtObject button3DZoomPlusPipeViewscreen: QtObject {
            readonly property url active: "qrc:/icons/zoom-plus-active.png"
            readonly property url enabled: "qrc:/icons/zoom-plus.png"
        }
        readonly property QtObject button3DZoomMinusPipeViewscreen: QtObject {
            readonly property url active: "qrc:/icons/zoom-minus-active.png"
            readonly property url enabled: "qrc:/icons/zoom-minus.png"
        }
        readonly property QtObject button3DGotoCamera: QtObject {
            readonly property url active: "qrc:/icons/goto-camera-active.png"
            readonly property url enabled: "qrc:/icons/goto-camera.png"
        }
        readonly property QtObject button3DGoToSection: QtObject {
            readonly property url active: "qrc:/icons/goto-section-active.png"
            readonly property url enabled: "qrc:/icons/goto-section.png"
        }
        readonly property QtObject button3DGoToNodeUpstream: QtObject {
            readonly property url active: "qrc:/icons/goto-upstream-active.png"
            readonly property url enabled: "qrc:/icons/goto-upstream.png"
        }
        readonly property QtObject button3DGoToNodeDownstream: QtObject {
            readonly property url active: "qrc:/icons/goto-downstream-active.png"
            readonly property url enabled: "qrc:/icons/goto-downstream.png"
        }
        readonly property QtObject button3DGotoGPS: QtObject {
            readonly property url active: "qrc:/icons/goto-gps-active.png"
            readonly property url enabled: "qrc:/icons/goto-gps.png"
        }
        readonly property QtObject button3DGotoAddress: QtObject {
            readonly property url active: "qrc:/icons/goto-address-active.png"
            readonly property url enabled: "qrc:/icons/goto-address.png"
        }
        readonly property QtObject button3DEditGPS: QtObject {
            readonly property url active: "qrc:/icons/edit-gps-active.png"
            readonly property url enabled: "qrc:/icons/edit-gps.png"
        }
    }
}
