import QtQuick 2.12
import QtTest 1.12
import view3d 1.0 as View3d

/** The scale bar, with a scene that holds no more than it asks of one. */
Item {
    id: window3d

    readonly property real gridVisibilityLimit: 3500

    width: 400
    height: 300

    QtObject {
        id: fakeScene

        property real height: 582
        property QtObject sceneRoot: QtObject {
            property real gridSize: 50
        }
        property QtObject camera: QtObject {
            property real viewVectorLength: 400
            property real viewVectorLenToFovScale: 0.15
        }
    }

    View3d.GridScaleInfo {
        id: info

        parentScene: fakeScene
    }

    TestCase {
        name: "GridScaleInfo"
        when: windowShown

        function cleanup() {
            host.setFeet(false)
            info.parentScene = fakeScene
            fakeScene.sceneRoot.gridSize = 50
            fakeScene.camera.viewVectorLength = 400
        }

        function test_itsDefaults() {
            compare(info.scaleVisibilityLimit, 35000)
            compare(info.baseMargin, 10)
            compare(info.edgesHeight, 10)
            compare(info.lineWidth, 2)
            compare(info.pixelScale, 165)
            compare(info.gridSeaLevel, 0)
        }

        function test_theTextIsASquaresSide_data() {
            return [{tag: "base", feet: false, size: 1, text: "10 cm"},
                    {tag: "below a metre", feet: false, size: 5, text: "50 cm"},
                    {tag: "a metre", feet: false, size: 10, text: "1 m"},
                    {tag: "the greatest", feet: false, size: 5000, text: "500 m"},
                    {tag: "inches", feet: true, size: 1.27, text: "10 inch"},
                    {tag: "a foot", feet: true, size: 3.048, text: "1 ft"},
                    {tag: "feet", feet: true, size: 15.24, text: "5 ft"},
                    // The user reads another unit than the project's, which the grid keeps.
                    {tag: "10 cm in inches", feet: true, size: 1, text: "3.9 inch"},
                    {tag: "20 cm in inches", feet: true, size: 2, text: "7.9 inch"},
                    {tag: "half a metre in feet", feet: true, size: 5, text: "1.6 ft"},
                    {tag: "a metre in feet", feet: true, size: 10, text: "3.3 ft"},
                    {tag: "500 m in feet", feet: true, size: 5000, text: "1640.4 ft"},
                    {tag: "5 inches in centimetres", feet: false, size: 1.27, text: "12.7 cm"},
                    {tag: "a foot in centimetres", feet: false, size: 3.048, text: "30.5 cm"},
                    {tag: "5 feet in metres", feet: false, size: 15.24, text: "1.5 m"},
                    // As a float arrives in QML.
                    {tag: "a float", feet: true, size: 3.0480000972, text: "1 ft"},
                    {tag: "a float below", feet: true, size: 3.0479998588, text: "1 ft"}]
        }

        function test_theTextIsASquaresSide(data) {
            host.setFeet(data.feet)
            fakeScene.sceneRoot.gridSize = 7
            fakeScene.sceneRoot.gridSize = data.size
            compare(info.determineText(), data.text)
            compare(findChild(info, "gridScaleText").text, data.text)
        }

        function test_theBarEndsInTwoMarks() {
            const bar = findChild(info, "rulerBody")
            const text = findChild(info, "gridScaleText")
            compare(bar.children.length, 2)
            for (let i = 0; i < 2; ++i) {
                const mark = bar.children[i]
                compare(mark.x, i === 0 ? 0 : bar.width - 2)
                compare(mark.width, 2)
                compare(mark.height, 10)
                compare(mark.y + mark.height, bar.height)
                verify(Qt.colorEqual(mark.color, design.misc.flyingObject.textColor))
            }
            verify(Qt.colorEqual(bar.color, design.misc.flyingObject.textColor))
            verify(Qt.colorEqual(text.color, design.misc.flyingObject.textColor))
            compare(text.font.pixelSize, design.misc.flyingObject.fontSize)
        }

        function test_theBarIsAsLongAsASquareIsSeen() {
            const bar = findChild(info, "rulerBody")
            fuzzyCompare(bar.width, 165 * 50 / (400 * 0.15), 1e-9)
            fakeScene.camera.viewVectorLength = 800
            fuzzyCompare(bar.width, 165 * 50 / (800 * 0.15), 1e-9)
            compare(bar.height, 2)
        }

        function test_thePixelScaleOfASceneFollowsItsHeight() {
            fuzzyCompare(info.pixelScaleOfScene, 165, 0.05)
            fakeScene.height = 1164
            fuzzyCompare(info.pixelScaleOfScene, 330, 0.1)
            fakeScene.height = 0
            compare(info.pixelScaleOfScene, 165)
            fakeScene.height = 582
        }

        function test_itStandsInTheLowerLeftCorner() {
            const bar = findChild(info, "rulerBody")
            const corner = bar.mapToItem(window3d, 0, bar.height)
            compare(corner.x, 10)
            compare(corner.y, 290)
        }

        function test_fromFarAwayItIsGone() {
            fakeScene.camera.viewVectorLength = 34999
            verify(info.visible)
            fakeScene.camera.viewVectorLength = 35000
            verify(!info.visible)
        }

        function test_withoutASceneItIsGone() {
            info.parentScene = null
            verify(!info.visible)
            compare(info.determineText(), "")
        }
    }
}
