import QtQuick 2.12
import QtTest 1.12
import "qrc:/viewer/BarFit.js" as BarFit

/** What has room on the application's bar. */
TestCase {
    name: "BarFit"

    function group(wide, closed, weight) {
        return { "wide": wide, "closed": closed, "weight": weight }
    }

    function test_allOfItHasRoom() {
        compare(BarFit.fit([group(100, 100, 1), group(200, 80, 2)], 310, 10, 50), ["wide", "wide"])
    }

    function test_aChoiceIsClosedBeforeAnythingGoes() {
        compare(BarFit.fit([group(100, 100, 1), group(200, 80, 2)], 309, 10, 50), ["wide", "closed"])
    }

    function test_theLightestGoesFirst() {
        const groups = [group(100, 100, 3), group(100, 100, 1), group(100, 100, 2)]
        compare(BarFit.fit(groups, 319, 10, 50), ["wide", "more", "wide"])
        compare(BarFit.fit(groups, 269, 10, 50), ["wide", "more", "more"])
    }

    function test_ofEqualsTheLastGoesFirst() {
        compare(BarFit.fit([group(100, 100, 1), group(100, 100, 1)], 180, 10, 50), ["wide", "more"])
    }

    function test_theButtonMoreNeedsRoomToo() {
        const groups = [group(100, 100, 2), group(100, 100, 1)]
        compare(BarFit.fit(groups, 209, 10, 99), ["wide", "more"])
        compare(BarFit.fit(groups, 208, 10, 99), ["more", "more"])
    }

    function test_nothingAtAll() {
        compare(BarFit.fit([], 100, 10, 50), [])
    }
}
