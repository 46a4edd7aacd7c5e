import Qt3D.Core 2.12
import Qt3D.Render 2.12
import QtQuick 2.12
import QtTest 1.12
import Torvik.Geo 1.0

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

    LocationValidInfoPanel {
        id: locationPanel
    }

    CameraDistanceInfoPanel {
        id: panel
    }

    LineEntity {
        id: line
    }

    LineMaterial {
        id: material
    }

    FrameGraphDefault {
        id: frameGraph
    }

    width: 400
    height: 300

    TestCase {
        name: "SmallItems"
        when: windowShown

        function test_aPlaceOutsideTheCoordinateSystemIsTold() {
            verify(!locationPanel.visible)
            GeoProjector.locationWithinProjectionRegion(false)
            verify(locationPanel.visible)
            compare(locationPanel.width, 1120)
            compare(locationPanel.height, 40)
            const parts = locationPanel.children[0].children
            verify(Qt.colorEqual(parts[0].color, "red"))
            compare(parts[0].opacity, 0.55)
            verify(Qt.colorEqual(parts[1].color, "white"))
            compare(parts[1].text, "The selected location is outside the bounds of the chosen projection system. \n"
                    + "Please change location or select a different projection system.")
            mouseClick(locationPanel, 30, 20)
            verify(!locationPanel.visible)
            GeoProjector.locationWithinProjectionRegion(false)
            verify(locationPanel.visible)
            GeoProjector.locationWithinProjectionRegion(true)
            verify(!locationPanel.visible)
        }

        function test_aLengthHasTheUnitThatSuitsIt_data() {
            return [{tag: "centimetres", value: 0.456, text: "46 cm"}, {tag: "metres", value: 12.4, text: "12 m"},
                    {tag: "one metre", value: 1, text: "1 m"}]
        }

        function test_aLengthHasTheUnitThatSuitsIt(data) {
            lengthLabel.value = data.value
            compare(lengthLabel.determineText(), data.text)
            verify(lengthLabel.implicitWidth > 2 * lengthLabel.baseMargin)
        }

        function test_inFeetEveryLengthIsInFeet() {
            host.setFeet(true)
            lengthLabel.value = 500
            compare(lengthLabel.determineText(), "1640 ft")
            lengthLabel.value = 0.5
            compare(lengthLabel.determineText(), "2 ft")
        }

        function cleanup() {
            host.setFeet(false)
        }

        function childOfType(item, property) {
            for (let i = 0; i < item.children.length; ++i) {
                if (item.children[i][property] !== undefined) {
                    return item.children[i]
                }
            }
            return null
        }

        /** Without the empty places that the list may have. */
        function childNodes(node) {
            return Array.from(node.childNodes).filter(function(child) { return child })
        }

        function test_theLengthStandsOnARoundedGround() {
            lengthLabel.value = 7
            const label = childOfType(lengthLabel, "elide")
            compare(label.text, "7 m")
            verify(Qt.colorEqual(label.color, "black"))
            compare(label.horizontalAlignment, Text.AlignHCenter)
            compare(label.verticalAlignment, Text.AlignVCenter)
            compare(label.maximumLineCount, 1)
            compare(label.elide, Text.ElideRight)
            compare(label.font.pixelSize, design.misc.thumbnailItem.fontSize)
            compare(label.font.family, font_Regular.name)
            compare(lengthLabel.baseMargin, 10)
            compare(lengthLabel.implicitWidth, label.implicitWidth + 20)
            compare(lengthLabel.implicitHeight, label.implicitHeight + 20)
            lengthLabel.baseMargin = 3
            compare(lengthLabel.implicitWidth, label.implicitWidth + 6)
            compare(lengthLabel.implicitHeight, label.implicitHeight + 6)
            lengthLabel.baseMargin = 10
            compare(lengthLabel.z, 1)
            compare(lengthLabel.radius, 5)
            verify(Qt.colorEqual(lengthLabel.color, Qt.rgba(0.7, 0.7, 0.7, 0.4)))
        }

        function test_theWarningIsWhiteOnRed() {
            const text = childOfType(panel, "wrapMode")
            compare(text.text, "3d view or map is too far from inspection area. \nPlease click compass to go back to "
                    + "inspection site.")
            verify(Qt.colorEqual(text.color, "white"))
            compare(text.wrapMode, Text.WordWrap)
            compare(panel.width, 400)
            compare(panel.height, text.implicitHeight + 20)
            const ground = childOfType(panel, "radius")
            verify(Qt.colorEqual(ground.color, "red"))
            fuzzyCompare(ground.opacity, 0.55, 1e-6)
            compare(ground.width, panel.width)
            compare(ground.height, panel.height)
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

        function test_aLineIsDrawnAsTwoPoints() {
            const renderer = line.components[0]
            compare(renderer.primitiveType, GeometryRenderer.Lines)
            compare(renderer.instanceCount, 1)
            compare(renderer.indexOffset, 0)
            compare(renderer.firstInstance, 0)
            compare(renderer.geometry.attributes.length, 1)
            const attribute = renderer.geometry.attributes[0]
            compare(attribute.attributeType, Attribute.VertexAttribute)
            compare(attribute.vertexBaseType, Attribute.Float)
            compare(attribute.vertexSize, 3)
            compare(attribute.byteOffset, 0)
            compare(attribute.count, 2)
            compare(attribute.name, "vertexPosition")
            verify(Qt.colorEqual(line.components[1].maincolor, "white"))
            compare(line.origin, Qt.vector3d(0, 0, 0))
            compare(line.direction, Qt.vector3d(0, 0, 0))
        }

        function test_theLinesMaterialTellsItsColourToTheShader() {
            compare(material.parameters.length, 1)
            compare(material.parameters[0].name, "maincolor")
            verify(Qt.colorEqual(material.maincolor, "black"))
            compare(material.parameters[0].value, Qt.vector3d(0, 0, 0))
            material.maincolor = Qt.rgba(0.2, 0.4, 1, 0.5)
            const value = material.parameters[0].value
            verify(value.minus(Qt.vector3d(0.2, 0.4, 1)).length() < 0.001, value)
        }

        function test_theLinesMaterialSuitsEveryProfile_data() {
            return [{tag: "gl3", index: 0, api: GraphicsApiFilter.OpenGL, profile: GraphicsApiFilter.CoreProfile,
                     version: [3, 1], colour: "fragColor = vec4(1.0, 0.5, 0.5, 1.0);"},
                    {tag: "gl2", index: 1, api: GraphicsApiFilter.OpenGL, profile: GraphicsApiFilter.NoProfile,
                     version: [2, 0], colour: "gl_FragColor = vec4(1.0, 0.5, 0.5, 1.0);"},
                    {tag: "es2", index: 2, api: GraphicsApiFilter.OpenGLES, profile: GraphicsApiFilter.CoreProfile,
                     version: [2, 0], colour: "gl_FragColor = vec4(1.0, 0.5, 0.5, 1.0);"}]
        }

        function test_theLinesMaterialSuitsEveryProfile(data) {
            compare(material.effect.techniques.length, 3)
            const technique = material.effect.techniques[data.index]
            compare(technique.graphicsApiFilter.api, data.api)
            compare(technique.graphicsApiFilter.profile, data.profile)
            compare(technique.graphicsApiFilter.majorVersion, data.version[0])
            compare(technique.graphicsApiFilter.minorVersion, data.version[1])
            compare(technique.filterKeys.length, 1)
            compare(technique.filterKeys[0].name, "renderingStyle")
            compare(technique.filterKeys[0].value, "forward")
            compare(technique.renderPasses.length, 1)
            const program = technique.renderPasses[0].shaderProgram
            const fragments = String(program.fragmentShaderCode)
            verify(fragments.indexOf(data.colour) > 0, fragments)
            const vertices = String(program.vertexShaderCode)
            for (const name of ["vertexPosition", "uniform mat4 modelMatrix", "uniform mat4 mvp"]) {
                verify(vertices.indexOf(name) > 0, vertices)
            }
        }

        function test_theOtherFrameGraphClearsTheWholeSurfaceTwice() {
            compare(frameGraph.surfacePixelRatio, 1)
            const colours = [Qt.rgba(0.7, 0.7, 0.7, 0.5), Qt.rgba(0, 0.7, 0.7, 0.5)]
            window3d.sceneTransparency = 0.5
            const viewports = childNodes(frameGraph)
            compare(viewports.length, 2)
            for (let i = 0; i < 2; ++i) {
                compare(viewports[i].normalizedRect, Qt.rect(0, 0, 1, 1))
                const buffers = childNodes(viewports[i])[0]
                compare(buffers.buffers, ClearBuffers.ColorDepthBuffer)
                verify(Qt.colorEqual(buffers.clearColor, colours[i]), buffers.clearColor)
                compare(childNodes(buffers)[0].camera, mainCamera)
            }
        }
    }
}
