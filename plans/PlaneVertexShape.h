#pragma once

#include "scene/KxView3dExport.h"

#include <Qt3DRender/QGeometryRenderer>

namespace Torvik::View3d {

/** Draws a PlaneVertexGeometry: a square along z with its near edge's middle at the origin, seen from above and,
 * without culling, from below. */
class KXVIEW3D_EXPORT PlaneVertexShape : public Qt3DRender::QGeometryRenderer {
    Q_OBJECT

public:
    explicit PlaneVertexShape(Qt3DCore::QNode* parent = nullptr);
};

} // namespace Torvik::View3d
