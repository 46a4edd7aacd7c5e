import QtQuick 2.12

/** Commands that belong together, and how the bar shows them. */
QtObject {
    enum Form {
        /** One command, on a button. */
        Button,
        /** One of several is on: side by side, or behind a button that names the one that is. */
        Choice,
        /** Behind a button with the group's title. */
        Menu
    }

    default property list<QtObject> commands
    property string name
    property string title
    property int form: BarGroup.Menu
    /** At the right-hand end of the bar. */
    property bool atEnd: false
    /** What has less of it gives way first where the bar is short. */
    property int weight: 0

    readonly property bool shown: {
        for (let i = 0; i < commands.length; ++i) {
            if (commands[i].shown)
                return true
        }
        return false
    }
    /** Of the one that is on, in a choice. */
    readonly property string current: {
        for (let i = 0; i < commands.length; ++i) {
            if (commands[i].on)
                return commands[i].text
        }
        return title
    }
    readonly property string closedText: (form === BarGroup.Choice ? current : title) + " \u25be"
    /** What a bar must have room for, whichever is on. */
    readonly property var closedTexts: {
        const texts = [title + " \u25be"]
        for (let i = 0; form === BarGroup.Choice && i < commands.length; ++i)
            texts.push(commands[i].text + " \u25be")
        return texts
    }
}
