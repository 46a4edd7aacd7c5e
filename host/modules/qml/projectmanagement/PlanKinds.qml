pragma Singleton

import QtQml 2.12

/** Which files can be laid as plans, for whoever lets the user choose one. */
QtObject {
    readonly property var endings: ["png", "jpg", "jpeg", "tif", "tiff", "bmp", "gif", "exif", "pdf", "dxf", "dwg"]
    /** Told by the ending of its name. */
    function knows(file) {
        const name = file.toString().toLowerCase()
        return endings.some(function(ending) { return name.endsWith("." + ending) })
    }
    /** As a file dialog wants them. */
    readonly property var nameFilters: [
        qsTr("Plans (%1)").arg(endings.map(function(ending) { return "*." + ending + " *." + ending.toUpperCase() })
                                      .join(" ")),
        qsTr("All files (*)")
    ]
}
