import QtQuick 2.12
import utils 1.0

import "."

/** What TwoSectionInterface asks of the user at each step. */
QtObject {
    readonly property Translator translator: Translator {
        translationClassName: "Torvik.Belmora.App.TwoSectionInterface"
    }
    readonly property var place1: ["TwoSectionsScaleAndPlace1",
        "Step 1: Please tap on the plan to define the reference segment"]
    readonly property var place2: ["TwoSectionsScaleAndPlace2", "Step 2: Please press NEXT STEP to continue"]
    readonly property var place3: ["TwoSectionsScaleAndPlace3",
        "Step 3: Please tap on the map to define the destination segment"]
    readonly property var place4: ["TwoSectionsScaleAndPlace4",
        "Step 4: To see the result press NEXT STEP again"]
    readonly property var north1: ["TwoSectionsNorthDirection1",
        "Step 1: Please tap on the plan to define the south point of the compass"]
    readonly property var north2: ["TwoSectionsNorthDirection2",
        "Step 2: Please tap on the plan to define the north point of the compass"]
    readonly property var north3: ["TwoSectionsNorthDirection3", "Step 3: To see the result press NEXT STEP again"]
    readonly property var value1: ["TwoSectionsScaleByValue1",
        "Step 1: Please tap on the plan to define the segment to be scaled by value"]
    readonly property var value2: ["TwoSectionsScaleByValue2",
        "Step 2. Press NEXT STEP to enter the length and see the result"]

    /** By the index of the state; the last state has none. */
    readonly property var ofTwoSections: [place1, place1, place2, place3, place3, place4]
    readonly property var ofOneSection: [north1, north2, value2, place3, place3, north3]
    readonly property var ofOneSectionAndValue: [value1, value1, value2, place3, place3, north3]

    function description(mode, stateIndex) {
        const texts = mode === TwoSectionMode.oneSection ? ofOneSection
                    : mode === TwoSectionMode.oneSectionAndValue ? ofOneSectionAndValue : ofTwoSections
        const text = texts[stateIndex]
        return text ? translator.txt(text[0], text[1]) : ""
    }
}
