pragma Singleton

import QtQml 2.12

/** What TwoSectionInterface lets the user point at. */
QtObject {
    readonly property int twoSections: 1
    readonly property int oneSection: 2
    readonly property int oneSectionAndValue: 4
}
