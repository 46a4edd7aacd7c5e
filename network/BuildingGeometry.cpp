#include "network/BuildingGeometry.h"

#include "scene/SharedComponents.h"

#include <Qt3DExtras/QSphereMesh>

namespace Torvik::View3d::Geometry {

BuildingGeometry::BuildingGeometry(Qt3DCore::QNode* parent)
    : MeshGeometry(parent)
    , m_sphereTransform(new Qt3DCore::QTransform)
{
    setVisible(true);
    // Behind the entity's own transform: the last one counts.
    addComponent(m_sphereTransform);
}

void BuildingGeometry::setLength(float) {}

void BuildingGeometry::setRadius(float newRadius)
{
    m_sphereTransform->setScale(newRadius);
    m_sphereTransform->setTranslation({0.0F, -newRadius, 0.0F});
}

float BuildingGeometry::radius() const
{
    return m_sphereTransform->scale();
}

Qt3DRender::QGeometryRenderer* BuildingGeometry::unitMesh() const
{
    return SharedComponents::instance().unitSphere();
}

} // namespace Torvik::View3d::Geometry
