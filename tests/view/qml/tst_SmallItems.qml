import Qt3D.Core 2.12
import Qt3D.Render 2.12
import QtQuick 2.12
import QtTest 1.12

import "qrc:/qml/view3d"

/** The small items around the scene, each with the names that it finds about it. */
Item {
    id: window3d

    property real sceneTransparency: 1

    QtObject {
        id: scene3d

        property QtObject camera: QtObject {
            property bool tooFarFromOrigin: false
        }
    }

    Camera {
        id: mainCamera
    }

    LengthLabel {
        id: lengthLabel
    }

    CameraDistanceInfoPanel {
        id: panel
    }

    LineEntity {
        id: line
    }

    FrameGraphDefault {
        id: frameGraph
    }

    width: 400
    height: 300

    TestCase {
        name: "SmallItems"
        when: windowShown

        function test_aLengthHasTheUnitThatSuitsIt_data() {
            return [{tag: "centimetres", value: 0.456, text: "46 cm"}, {tag: "metres", value: 12.4, text: "12 m"},
                    {tag: "one metre", value: 1, text: "1 m"}]
        }

        function test_aLengthHasTheUnitThatSuitsIt(data) {
            lengthLabel.value = data.value
            compare(lengthLabel.determineText(), data.text)
            verify(lengthLabel.implicitWidth > 2 * lengthLabel.baseMargin)
        }

        function test_theWarningShowsFarAwayAndAClickHidesIt() {
            verify(!panel.visible)
            scene3d.camera.tooFarFromOrigin = true
            verify(panel.visible)
            mouseClick(panel)
            verify(!panel.visible)
            scene3d.camera.tooFarFromOrigin = false
            scene3d.camera.tooFarFromOrigin = true
            verify(panel.visible)
            scene3d.camera.tooFarFromOrigin = false
            verify(!panel.visible)
        }

        function test_aLineRunsFromItsEndToItsOrigin() {
            const data = line.buildVertexBufferData(Qt.vector3d(1, 2, 3), Qt.vector3d(0, 0, 1), 5)
            compare(Array.from(new Float32Array(data.buffer ? data.buffer : data)), [1, 2, 8, 1, 2, 3])
            compare(line.length, 1)
        }

        function test_theOtherFrameGraphLoads() {
            verify(frameGraph)
        }
    }
}
