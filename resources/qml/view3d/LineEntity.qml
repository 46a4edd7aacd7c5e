import QtQuick 2.12
import Qt3D.Core 2.12
import Qt3D.Render 2.12

/** A straight line in the scene. */
Entity {
    id: lineEntity

    property vector3d origin: Qt.vector3d(0, 0, 0)
    property vector3d direction: Qt.vector3d(0, 0, 0)
    property real length: 1

    /** Six floats: the far end, then the origin. */
    function buildVertexBufferData(origin, dir, len) {
        const end = origin.plus(dir.times(len))
        return new Float32Array([end.x, end.y, end.z, origin.x, origin.y, origin.z])
    }

    components: [renderer, lineMaterial]

    GeometryRenderer {
        id: renderer

        primitiveType: GeometryRenderer.Lines
        instanceCount: 1
        indexOffset: 0
        firstInstance: 0
        geometry: Geometry {
            Attribute {
                attributeType: Attribute.VertexAttribute
                vertexBaseType: Attribute.Float
                vertexSize: 3
                byteOffset: 0
                count: 2
                name: defaultPositionAttributeName
                buffer: Buffer {
                    data: lineEntity.buildVertexBufferData(lineEntity.origin, lineEntity.direction, lineEntity.length)
                }
            }
        }
    }

    LineMaterial {
        id: lineMaterial

        maincolor: "white"
    }
}
