pragma Singleton

import QtQml 2.12

/** The main waiting box: the user sees that something goes on, and touches nothing meanwhile. */
QtObject {
    property bool shown: false

    function show() {
        shown = true
    }

    function hide() {
        shown = false
    }
}
