#pragma once

#include "scene/KxView3dExport.h"

#include <Qt3DExtras/QTextureMaterial>

namespace Torvik::View3d {

class OnTopTextureEffect;

/** A texture that no light changes and no pipe hides. The texture is meant to be set once: until then the material
 * draws by the effect of its base class, and each further one adds its parameters to those that are there. */
class KXVIEW3D_EXPORT OnTopUnlitTextureMaterial : public Qt3DExtras::QTextureMaterial {
    Q_OBJECT

public:
    explicit OnTopUnlitTextureMaterial(Qt3DCore::QNode* parent = nullptr);

public slots:
    void internalOnTextureChanged(Qt3DRender::QAbstractTexture* texture);

private:
    OnTopTextureEffect* m_effect = nullptr;
};

} // namespace Torvik::View3d
