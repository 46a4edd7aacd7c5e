import QtQuick 2.12

/** Something that the user can do, wherever it is offered: on a button of the bar or on a line of a menu. */
QtObject {
    /** Of the button or the line. */
    property string name
    property string text
    property url icon
    /** What it stands for is on. */
    property bool on: false
    property bool enabled: true
    property bool shown: true
    /** It switches something, of which the user may want more: its menu stays open. */
    property bool switches: false

    signal triggered()
}
