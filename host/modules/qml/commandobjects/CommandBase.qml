import QtQuick 2.12

/** A command of the command bar. It runs while `running` is true; run() sets that back when it has ended. */
Item {
    id: command

    property string text
    /** Style of the icon: `enabled` and `active`, each a picture. */
    property var icon
    /** What it switches is on. */
    property bool active: false
    property bool running: false

    function run() {
        running = false
    }

    /** What a tap on the command's button does. A command that still runs is not begun again. */
    function trigger() {
        if (enabled && !running)
            running = true
    }

    onRunningChanged: {
        if (running)
            command.run()
    }
}
