#pragma once

#include "network/NodeGeometry.h"

#include <Qt3DRender/QMaterial>

#include <QPointer>

namespace Qt3DRender {
class QGeometryRenderer;
}

namespace Torvik::View3d::Geometry {

/** A geometry that draws one mesh of unit size, which it shares with other nodes; its transform gives it its size. The
 *  materials are not owned, and neither is on the entity before selected() or unselected() runs. */
class MeshGeometry : public NodeGeometry {
    Q_OBJECT

public:
    void setSelectedMaterial(Qt3DRender::QMaterial* material) { m_selectedMaterial = material; }
    void setUnselectedMaterial(Qt3DRender::QMaterial* material) { m_unselectedMaterial = material; }
    Qt3DRender::QMaterial* selectedMaterial() const { return m_selectedMaterial; }
    Qt3DRender::QMaterial* unselectedMaterial() const { return m_unselectedMaterial; }

    void selected() override;
    void unselected() override;
    /** Takes the mesh off or puts it on; the material stays. */
    void setVisible(bool visible) override;
    bool isVisible() const;

protected:
    explicit MeshGeometry(Qt3DCore::QNode* parent);

    /** A unit mesh that has room for one more entity. */
    virtual Qt3DRender::QGeometryRenderer* unitMesh() const = 0;

private:
    void exchange(Qt3DRender::QMaterial* off, Qt3DRender::QMaterial* on);

    QPointer<Qt3DRender::QMaterial> m_selectedMaterial;
    QPointer<Qt3DRender::QMaterial> m_unselectedMaterial;
    QPointer<Qt3DCore::QComponent> m_mesh;
};

} // namespace Torvik::View3d::Geometry
