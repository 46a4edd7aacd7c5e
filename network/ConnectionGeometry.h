#pragma once

#include "network/NodeGeometry.h"

namespace Qt3DExtras {
class QCylinderMesh;
}

namespace Torvik::View3d::Geometry {

/** Shows nothing, not even that it is selected. */
class ConnectionGeometry : public NodeGeometry {
    Q_OBJECT

public:
    explicit ConnectionGeometry(Qt3DCore::QNode* parent);

    void selected() override;
    void unselected() override;
    /** Without a mesh these do nothing. */
    void setLength(float length) override;
    void setRadius(float radius) override;
    void setVisible(bool visible) override;

    /** A developer's aid: makes the connection visible. */
    void createDebugMesh();
    void createDebugMaterial();

private:
    Qt3DExtras::QCylinderMesh* m_mesh = nullptr;
};

} // namespace Torvik::View3d::Geometry
