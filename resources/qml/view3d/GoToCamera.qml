import QtQuick 2.12
import commandobjects 1.0
import utils 1.0

/** Lets the view ride along with the inspection vehicle, or stay behind. */
CommandBase {
    text: translator.txt("GoToCameraButton", "Go-To\nCamera")
    icon: design.icons.button3DGotoCamera
    enabled: !window3d.splitViewMode
    active: GlobalNav.cameraFollow

    function run() {
        GlobalNav.cameraFollow = !GlobalNav.cameraFollow
        running = false
    }

    Translator {
        id: translator

        translationClassName: "Ostel.Sightlog.App.Essential3DCommands"
    }
}
