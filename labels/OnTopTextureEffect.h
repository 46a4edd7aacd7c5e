#pragma once

#include "scene/KxView3dExport.h"

#include <Qt3DRender/QEffect>

namespace Torvik::View3d {

/** Draws a texture as it is over everything behind the middle of the depth range, whatever stands in front: labels must
 *  never be hidden by the pipes. Two that overlap show in the order they are drawn in.
 *
 *  Takes the parameters "diffuseTexture" and "texCoordOffset" (QVector2D, where the texture begins). */
class KXVIEW3D_EXPORT OnTopTextureEffect : public Qt3DRender::QEffect {
    Q_OBJECT

public:
    explicit OnTopTextureEffect(Qt3DCore::QNode* parent = nullptr);

    static constexpr const char* textureParameter = "diffuseTexture";
    static constexpr const char* offsetParameter = "texCoordOffset";
};

} // namespace Torvik::View3d
