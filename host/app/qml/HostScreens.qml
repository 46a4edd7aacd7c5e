import QtQuick 2.12

import "."
import "InputScreens.js" as InputScreens

/** Shows the screens that the view asks screenManager for, over the window. Who asked is called back once: with what was
 *  put in, or without anything when it was cancelled. */
Item {
    id: screens

    /** Screens that are open, the one on top last: its description and who asked. */
    property var open: []

    /** Whole screens of the view, by the key that they are asked for. */
    readonly property var files: ({ "View3d::PlanLoadingScreen": "qrc:/qml/view3d/PlanLoadingScreen.qml" })
    readonly property var topmost: open.length > 0 ? open[open.length - 1] : null
    /** Of whole screens the one on top; it stays as it is below a form. */
    readonly property var screen: lastWithFile(open)
    /** Descriptions of the forms, by number. No property of each: a form keeps its own while others come and go. */
    readonly property var descriptions: ({})
    property int formsSoFar: 0

    /** An object is to be looked for among those of the project. */
    signal overviewRequested(string objectId)

    function lastWithFile(entries) {
        for (let i = entries.length - 1; i >= 0; --i) {
            if (entries[i].file)
                return entries[i]
        }
        return null
    }

    function openForm(name, description, callback) {
        const number = ++formsSoFar
        descriptions[number] = description
        open = open.concat([{ "name": name, "callback": callback, "form": number }])
        // The newest comes first, and is the only one to be seen.
        forms.insert(0, { "number": number })
    }

    function close(result) {
        if (open.length === 0)
            return
        const top = open[open.length - 1]
        open = open.slice(0, -1)
        if (top.form) {
            forms.remove(0)
            delete descriptions[top.form]
        }
        if (top.callback)
            top.callback(result)
    }

    anchors.fill: parent
    onTopmostChanged: screenManager.ongoingScreenKey = topmost ? topmost.name : screenManager.startKey

    Connections {
        target: screenManager
        function onScreenRequested(name, args) {
            if (name === "ProjectOverview::ProjectOverviewScreen") {
                const wanted = args.requestSelectedObject
                screens.overviewRequested(wanted && wanted.valid ? wanted.id() : "")
                return
            }
            if (screens.files[name]) {
                screens.open = screens.open.concat([{ "name": name, "file": screens.files[name],
                                                       "properties": args }])
                return
            }
            const description = InputScreens.describe(name, args)
            if (description)
                screens.openForm(name, description, args.screenCallback)
        }
        function onCloseRequested() {
            screens.close(undefined)
        }
    }

    Repeater {
        model: ListModel { id: forms }

        InputForm {
            objectName: "inputScreen"
            visible: index === 0 && !!screens.topmost && screens.topmost.form === number
            focus: visible
            description: screens.descriptions[number]
            onAccepted: screens.close(result)
            onDismissed: screens.close(undefined)
        }
    }

    Loader {
        id: whole

        readonly property var wanted: screens.screen

        anchors.fill: parent
        visible: screens.topmost === wanted
        onWantedChanged: {
            if (wanted)
                setSource(wanted.file, wanted.properties)
            else
                source = ""
        }
        onLoaded: item.init()
    }

    MessageBoxes {}
}
