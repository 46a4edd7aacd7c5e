import QtQuick 2.12
import commandobjects 1.0
import utils 1.0

/** Shows the section that is being inspected. */
CommandBase {
    text: translator.txt("GoToSectionButton", "Go-To\nSection")
    icon: design.icons.button3DGoToSection
    enabled: belmora.appStateData.activeInspection.valid

    function run() {
        GlobalNav.goToCurrentSection()
        running = false
    }

    Translator {
        id: translator

        translationClassName: "Ostel.Sightlog.App.Essential3DCommands"
    }
}
