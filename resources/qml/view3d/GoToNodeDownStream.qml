import QtQuick 2.12
import commandobjects 1.0
import utils 1.0

/** Shows the node at the lower end of the section that is being inspected. */
CommandBase {
    text: translator.txt("GoToNodeDownstreamButton", "Go-To\nNode\ndownstream")
    icon: design.icons.button3DGoToNodeDownstream
    enabled: belmora.appStateData.activeInspection.valid

    function run() {
        GlobalNav.goToDownstreamNode()
        running = false
    }

    Translator {
        id: translator

        translationClassName: "Ostel.Sightlog.App.Essential3DCommands"
    }
}
