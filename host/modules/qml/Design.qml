import QtQuick 2.12

/** The style tree that the view reads under the name "design". */
QtObject {
    readonly property QtObject misc: QtObject {
        readonly property QtObject manholeMaterial: QtObject {
            readonly property color coolColor: Qt.rgba(0.16, 0.13, 0.12, 1)
            readonly property color warmColor: Qt.rgba(0.80, 0.58, 0.36, 1)
        }
        readonly property QtObject thumbnailItem: QtObject {
            readonly property int fontSize: 16
        }
    }
}
