#pragma once

#include <Qt3DRender/QGeometry>

namespace Torvik::View3d {

/** A square of two triangles on the ground's plane: x from -0.5 to 0.5, z from 0 to 1. It has places only, no normals
 *  and no texture coordinates. */
class PlaneVertexGeometry : public Qt3DRender::QGeometry {
    Q_OBJECT

public:
    explicit PlaneVertexGeometry(Qt3DCore::QNode* parent = nullptr);

    static constexpr unsigned int vertexCount = 6;
};

} // namespace Torvik::View3d
