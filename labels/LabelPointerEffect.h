#pragma once

#include <Qt3DRender/QEffect>

namespace Torvik::View3d {

/** As OnTopEffect, but a hair behind what that and OnTopTextureEffect draw: no pointer crosses a label's text. */
class LabelPointerEffect : public Qt3DRender::QEffect {
    Q_OBJECT

public:
    explicit LabelPointerEffect(Qt3DCore::QNode* parent = nullptr);
};

} // namespace Torvik::View3d
