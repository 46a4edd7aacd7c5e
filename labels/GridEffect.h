#pragma once

#include "scene/KxView3dExport.h"

#include <Qt3DRender/QEffect>

namespace Torvik::View3d {

/** Another look of the grid: white lines of the screen instead of the ground's own. */
class KXVIEW3D_EXPORT GridEffect : public Qt3DRender::QEffect {
    Q_OBJECT

public:
    explicit GridEffect(Qt3DCore::QNode* parent = nullptr);
};

} // namespace Torvik::View3d
