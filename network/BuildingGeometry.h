#pragma once

#include "network/MeshGeometry.h"

namespace Torvik::View3d::Geometry {

/** A sphere whose top touches the node's position. The depth plays no part. */
class BuildingGeometry : public MeshGeometry {
    Q_OBJECT

public:
    explicit BuildingGeometry(Qt3DCore::QNode* parent);

    /** Does nothing. */
    void setLength(float length) override;
    void setRadius(float radius) override;
    float radius() const;
    /** Places and sizes the sphere. */
    Qt3DCore::QTransform* sphereTransform() const { return m_sphereTransform; }

protected:
    Qt3DRender::QGeometryRenderer* unitMesh() const override;

private:
    Qt3DCore::QTransform* m_sphereTransform;
};

} // namespace Torvik::View3d::Geometry
