#include "network/MeshGeometry.h"

#include <Qt3DRender/QGeometryRenderer>

namespace Torvik::View3d::Geometry {

MeshGeometry::MeshGeometry(Qt3DCore::QNode* parent)
    : NodeGeometry(parent)
{
}

void MeshGeometry::selected()
{
    exchange(m_unselectedMaterial, m_selectedMaterial);
}

void MeshGeometry::unselected()
{
    exchange(m_selectedMaterial, m_unselectedMaterial);
}

void MeshGeometry::exchange(Qt3DRender::QMaterial* off, Qt3DRender::QMaterial* on)
{
    if (off)
        removeComponent(off);
    if (on)
        addComponent(on);
}

void MeshGeometry::setVisible(bool visible)
{
    if (visible == isVisible())
        return;
    if (visible) {
        // Asked for anew each time: others may have taken the old one's room meanwhile.
        m_mesh = unitMesh();
        addComponent(m_mesh);
    } else {
        removeComponent(m_mesh);
        m_mesh = nullptr;
    }
}

bool MeshGeometry::isVisible() const
{
    return m_mesh && components().contains(m_mesh);
}

} // namespace Torvik::View3d::Geometry
