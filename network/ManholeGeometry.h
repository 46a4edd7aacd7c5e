#pragma once

#include "network/MeshGeometry.h"

namespace Torvik::View3d::Geometry {

/** A cylinder that hangs from the node's position, which is ground level, down to its depth. */
class ManholeGeometry : public MeshGeometry {
    Q_OBJECT

public:
    explicit ManholeGeometry(Qt3DCore::QNode* parent);

    void setLength(float length) override;
    void setRadius(float radius) override;
    float length() const;
    float radius() const;

protected:
    Qt3DRender::QGeometryRenderer* unitMesh() const override;
};

} // namespace Torvik::View3d::Geometry
