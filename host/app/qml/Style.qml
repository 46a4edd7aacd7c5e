pragma Singleton
import QtQuick 2.12
import QtQuick.Window 2.12

/** Colours and measures of the application: dark on light, one accent. */
QtObject {
    readonly property color paper: "#fbfaf8"
    readonly property color panel: "#f2f0ec"
    readonly property color line: "#d9d5ce"
    readonly property color ink: "#23282d"
    readonly property color quietInk: "#667078"
    readonly property color accent: "#0b6e77"
    readonly property color accentInk: "#ffffff"
    readonly property color pressed: "#e2ded7"
    readonly property color alarm: "#a33327"
    readonly property color alarmPaper: "#fbeae7"

    readonly property int textSize: 15
    readonly property int smallTextSize: 13
    readonly property int gap: 8
    readonly property int radius: 6
    /** From a frame to what it holds. */
    readonly property int inset: 3
    /** A finger hits what is 9 mm high. */
    readonly property int touch: Math.max(40, Math.ceil(9 * Screen.pixelDensity))
    /** In the bar and its menus, which are used in gloves. */
    readonly property int bar: Math.max(48, Math.ceil(11 * Screen.pixelDensity))
}
