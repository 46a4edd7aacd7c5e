pragma Singleton

import QtQml 2.12

/** The grid that the buttons of a screen stand on. */
QtObject {
    readonly property int buttonHeight: 44
    readonly property int gap: 8

    /** Where the button of a row begins, from the top. */
    function calcHeight(row) {
        return row * (buttonHeight + gap)
    }
}
