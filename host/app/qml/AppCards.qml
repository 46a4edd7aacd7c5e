import QtQuick 2.12
import ostel.controls 1.0

import "."

/** The application's own cards over the window, one at a time. */
Item {
    id: cards

    /** Name of the open card's file without its ending; empty for none. */
    property string open

    /** The user wants to choose a project's folder. */
    signal folderWanted()

    function show(name) {
        open = name
    }
    function close() {
        open = ""
    }

    anchors.fill: parent

    Loader {
        id: loader

        anchors.fill: parent
        active: cards.open !== ""
        focus: active
        source: active ? cards.open + ".qml" : ""
        onLoaded: item.forceActiveFocus()
    }

    Connections {
        target: viewer.desk ? viewer.desk.photos : null

        function onWritten(path) {
            MessageBox.info(qsTr("Written"), path)
        }
        function onFailed(reason) {
            MessageBox.error(qsTr("Not written"), reason)
        }
    }

    Connections {
        target: loader.item

        function onDismissed() {
            cards.close()
        }
    }

    Connections {
        target: loader.item
        ignoreUnknownSignals: true

        function onFolderWanted() {
            cards.close()
            cards.folderWanted()
        }
        function onCardWanted(name) {
            cards.show(name)
        }
    }
}
