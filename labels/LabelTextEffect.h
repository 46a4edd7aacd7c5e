#pragma once

#include <Qt3DRender/QEffect>

namespace Torvik::View3d {

/** As OnTopTextureEffect, but each label has a depth of its own around that one, so that of labels which lie on one
 *  another the same is on top in every picture.
 *
 *  Takes the parameters "diffuseTexture" and "layerDepth" (float, part of the depth range; the least is on top). */
class LabelTextEffect : public Qt3DRender::QEffect {
    Q_OBJECT

public:
    explicit LabelTextEffect(Qt3DCore::QNode* parent = nullptr);

    static constexpr const char* textureParameter = "diffuseTexture";
    static constexpr const char* depthParameter = "layerDepth";
};

} // namespace Torvik::View3d
