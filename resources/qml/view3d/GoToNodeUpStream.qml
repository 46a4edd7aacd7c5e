import QtQuick 2.12
import commandobjects 1.0
import utils 1.0

/** Shows the node at the upper end of the section that is being inspected. */
CommandBase {
    text: translator.txt("GoToNodeUpstreamButton", "Go-To\nNode\nUpstream")
    icon: design.icons.button3DGoToNodeUpstream
    enabled: belmora.appStateData.activeInspection.valid

    function run() {
        GlobalNav.goToUpstreamNode()
        running = false
    }

    Translator {
        id: translator

        translationClassName: "Ostel.Sightlog.App.Essential3DCommands"
    }
}
