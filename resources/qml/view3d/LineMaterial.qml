import QtQuick 2.12
import Qt3D.Core 2.12
import Qt3D.Render 2.12

/** One colour, without light. */
Material {
    id: lineMaterial

    property color maincolor: Qt.rgba(0.0, 0.0, 0.0, 1.0)

    parameters: [
        Parameter {
            name: "maincolor"
            value: Qt.vector3d(lineMaterial.maincolor.r, lineMaterial.maincolor.g, lineMaterial.maincolor.b)
        }
    ]

    effect: Effect {
        FilterKey {
            id: forward

            name: "renderingStyle"
            value: "forward"
        }

        ShaderProgram {
            id: gl3Shader

            vertexShaderCode: loadSource("qrc:/shaders/gl3/simpleColor.vert")
            fragmentShaderCode: loadSource("qrc:/shaders/gl3/simpleColor.frag")
        }

        ShaderProgram {
            id: es2Shader

            vertexShaderCode: loadSource("qrc:/shaders/es2/simpleColor.vert")
            fragmentShaderCode: loadSource("qrc:/shaders/es2/simpleColor.frag")
        }

        techniques: [
            Technique {
                filterKeys: [forward]
                graphicsApiFilter {
                    api: GraphicsApiFilter.OpenGL
                    profile: GraphicsApiFilter.CoreProfile
                    majorVersion: 3
                    minorVersion: 1
                }
                renderPasses: [RenderPass { shaderProgram: gl3Shader }]
            },
            Technique {
                filterKeys: [forward]
                graphicsApiFilter {
                    api: GraphicsApiFilter.OpenGL
                    profile: GraphicsApiFilter.NoProfile
                    majorVersion: 2
                    minorVersion: 0
                }
                renderPasses: [RenderPass { shaderProgram: es2Shader }]
            },
            Technique {
                filterKeys: [forward]
                graphicsApiFilter {
                    api: GraphicsApiFilter.OpenGLES
                    profile: GraphicsApiFilter.CoreProfile
                    majorVersion: 2
                    minorVersion: 0
                }
                renderPasses: [RenderPass { shaderProgram: es2Shader }]
            }
        ]
    }
}
