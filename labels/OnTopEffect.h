#pragma once

#include "scene/KxView3dExport.h"

#include <Qt3DRender/QEffect>

/** Draws in one flat colour over everything behind the middle of the depth range, whatever stands in front: handles
 * must never be hidden by the pipes. The material gives the colour as parameter "handleColor".
 *
 * Meant for a context without a profile or of OpenGL ES, as the view's windows have: its desktop technique asks for no
 * version, and Qt 3D doesn't take such a one in a context of a core profile. */
class KXVIEW3D_EXPORT OnTopEffect : public Qt3DRender::QEffect {
    Q_OBJECT

public:
    explicit OnTopEffect(Qt3DCore::QNode* parent = nullptr);

    static constexpr const char* colourParameter = "handleColor";
};
