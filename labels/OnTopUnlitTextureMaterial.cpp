#include "labels/OnTopUnlitTextureMaterial.h"

#include "labels/OnTopTextureEffect.h"

#include <Qt3DRender/QAbstractTexture>
#include <Qt3DRender/QParameter>

#include <QVector2D>

namespace Torvik::View3d {

OnTopUnlitTextureMaterial::OnTopUnlitTextureMaterial(Qt3DCore::QNode* parent)
    : Qt3DExtras::QTextureMaterial(parent)
    , m_effect(new OnTopTextureEffect(this))
{
    connect(this, &QTextureMaterial::textureChanged, this, &OnTopUnlitTextureMaterial::internalOnTextureChanged);
}

void OnTopUnlitTextureMaterial::internalOnTextureChanged(Qt3DRender::QAbstractTexture* texture)
{
    using Qt3DRender::QParameter;
    m_effect->addParameter(new QParameter(QLatin1String(OnTopTextureEffect::textureParameter), texture));
    m_effect->addParameter(new QParameter(QLatin1String(OnTopTextureEffect::offsetParameter), QVector2D(0.0F, 0.0F)));
    setEffect(m_effect);
}

} // namespace Torvik::View3d
