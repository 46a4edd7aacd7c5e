#include "network/ConnectionGeometry.h"

#include <Qt3DExtras/QCylinderMesh>
#include <Qt3DExtras/QPhongMaterial>

#include <QColor>

namespace Torvik::View3d::Geometry {

namespace {

constexpr float debugLength = 3.5F;
constexpr float debugRadius = 0.1F;

} // namespace

ConnectionGeometry::ConnectionGeometry(Qt3DCore::QNode* parent)
    : NodeGeometry(parent)
{
}

void ConnectionGeometry::selected() {}

void ConnectionGeometry::unselected() {}

void ConnectionGeometry::setLength(float length)
{
    if (m_mesh)
        m_mesh->setLength(length);
}

void ConnectionGeometry::setRadius(float radius)
{
    if (m_mesh)
        m_mesh->setRadius(radius);
}

void ConnectionGeometry::setVisible(bool visible)
{
    if (!m_mesh || visible == components().contains(m_mesh))
        return;
    if (visible)
        addComponent(m_mesh);
    else
        removeComponent(m_mesh);
}

void ConnectionGeometry::createDebugMesh()
{
    m_mesh = new Qt3DExtras::QCylinderMesh(this);
    m_mesh->setLength(debugLength);
    m_mesh->setRadius(debugRadius);
    addComponent(m_mesh);
}

void ConnectionGeometry::createDebugMaterial()
{
    auto* const material = new Qt3DExtras::QPhongMaterial(this);
    material->setDiffuse(QColor(235, 232, 52));
    addComponent(material);
}

} // namespace Torvik::View3d::Geometry
