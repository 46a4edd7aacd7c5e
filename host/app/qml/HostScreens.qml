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
    readonly property var form: topmost && topmost.description ? topmost : null
    readonly property var screen: topmost && topmost.file ? topmost : null

    /** An object is to be looked for among those of the project. */
    signal overviewRequested(string objectId)

    function close(result) {
        if (open.length === 0)
            return
        const top = open[open.length - 1]
        open = open.slice(0, -1)
        if (top.callback)
            top.callback(result)
    }

    anchors.fill: parent

    Connections {
        target: screenManager
        function onScreenRequested(name, args) {
            if (name === "ProjectOverview::ProjectOverviewScreen") {
                const wanted = args.requestSelectedObject
                screens.overviewRequested(wanted && wanted.valid ? wanted.id() : "")
                return
            }
            if (screens.files[name]) {
                screens.open = screens.open.concat([{ "file": screens.files[name], "properties": args }])
                return
            }
            const description = InputScreens.describe(name, args)
            if (description)
                screens.open = screens.open.concat([{ "description": description, "callback": args.screenCallback }])
        }
        function onCloseRequested() {
            screens.close(undefined)
        }
    }

    Loader {
        anchors.fill: parent
        active: !!screens.form
        focus: active
        sourceComponent: InputForm {
            objectName: "inputScreen"
            description: screens.form ? screens.form.description : ({ "rows": [] })
            onAccepted: screens.close(result)
            onDismissed: screens.close(undefined)
        }
    }

    Loader {
        id: whole

        readonly property var wanted: screens.screen

        anchors.fill: parent
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
