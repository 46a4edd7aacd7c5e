#include "network/ManholeGeometry.h"

#include "scene/SharedComponents.h"

#include <Qt3DExtras/QCylinderMesh>

namespace Torvik::View3d::Geometry {

ManholeGeometry::ManholeGeometry(Qt3DCore::QNode* parent)
    : MeshGeometry(parent)
{
    setVisible(true);
}

void ManholeGeometry::setLength(float newLength)
{
    const QVector3D scale = m_transform->scale3D();
    m_transform->setScale3D({scale.x(), newLength, scale.z()});
    m_transform->setTranslation({0.0F, -newLength / 2.0F, 0.0F});
}

void ManholeGeometry::setRadius(float newRadius)
{
    m_transform->setScale3D({newRadius, length(), newRadius});
}

float ManholeGeometry::length() const
{
    return m_transform->scale3D().y();
}

float ManholeGeometry::radius() const
{
    return m_transform->scale3D().x();
}

Qt3DRender::QGeometryRenderer* ManholeGeometry::unitMesh() const
{
    return SharedComponents::instance().unitCylinder();
}

} // namespace Torvik::View3d::Geometry
