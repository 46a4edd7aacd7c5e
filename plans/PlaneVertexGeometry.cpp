#include "plans/PlaneVertexGeometry.h"

#include <Qt3DRender/QAttribute>
#include <Qt3DRender/QBuffer>

namespace Torvik::View3d {

using Qt3DRender::QAttribute;

namespace {

constexpr unsigned int floatsPerVertex = 3;
constexpr float corners[PlaneVertexGeometry::vertexCount * floatsPerVertex] = {
    -0.5F, 0.0F, 0.0F, -0.5F, 0.0F, 1.0F, 0.5F,  0.0F, 1.0F, //
    0.5F,  0.0F, 1.0F, 0.5F,  0.0F, 0.0F, -0.5F, 0.0F, 0.0F,
};

} // namespace

PlaneVertexGeometry::PlaneVertexGeometry(Qt3DCore::QNode* parent)
    : Qt3DRender::QGeometry(parent)
{
    auto* const buffer = new Qt3DRender::QBuffer(this);
    buffer->setData(QByteArray(reinterpret_cast<const char*>(corners), sizeof(corners)));

    auto* const position = new QAttribute(this);
    position->setName(QAttribute::defaultPositionAttributeName());
    position->setAttributeType(QAttribute::VertexAttribute);
    position->setVertexBaseType(QAttribute::Float);
    position->setVertexSize(floatsPerVertex);
    position->setBuffer(buffer);
    position->setByteOffset(0);
    position->setByteStride(floatsPerVertex * sizeof(float));
    position->setCount(vertexCount);
    addAttribute(position);
}

} // namespace Torvik::View3d
