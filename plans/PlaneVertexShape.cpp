#include "plans/PlaneVertexShape.h"

#include "plans/PlaneVertexGeometry.h"

namespace Torvik::View3d {

PlaneVertexShape::PlaneVertexShape(Qt3DCore::QNode* parent)
    : Qt3DRender::QGeometryRenderer(parent)
{
    setInstanceCount(1);
    setFirstVertex(0);
    setFirstInstance(0);
    setPrimitiveType(Triangles);
    setVertexCount(PlaneVertexGeometry::vertexCount);
    setGeometry(new PlaneVertexGeometry(this));
}

} // namespace Torvik::View3d
