#include "labels/LabelFace.h"

#include "labels/LabelTextEffect.h"
#include "labels/OnTopEffect.h"
#include "labels/PaintedTextureText.h"

#include <Qt3DCore/QTransform>
#include <Qt3DRender/QEffect>
#include <Qt3DRender/QGeometryRenderer>
#include <Qt3DRender/QMaterial>
#include <Qt3DRender/QParameter>
#include <Qt3DRender/QTexture>

namespace Torvik::View3d {

namespace {

const QColor pointerColour(QStringLiteral("blue"));

Qt3DRender::QMaterial* materialOf(Qt3DCore::QNode* parent, Qt3DRender::QEffect* effect)
{
    auto* const material = new Qt3DRender::QMaterial(parent);
    material->setEffect(effect);
    return material;
}

Qt3DRender::QParameter* add(Qt3DRender::QMaterial* material, const char* name, const QVariant& value)
{
    auto* const parameter = new Qt3DRender::QParameter(QLatin1String(name), value);
    material->addParameter(parameter);
    return parameter;
}

} // namespace

LabelFace::LabelFace(Qt3DCore::QNode* parent, const LabelFaceParts& parts)
    : m_texture(new PaintedTextureText)
    , m_surface(new Qt3DCore::QEntity(this))
    , m_surfaceTransform(new Qt3DCore::QTransform)
    , m_pointer(new Qt3DCore::QEntity(this))
    , m_pointerTransform(new Qt3DCore::QTransform)
{
    auto* const texture = new Qt3DRender::QTexture2D(this);
    texture->setSamples(1);
    texture->setMinificationFilter(Qt3DRender::QAbstractTexture::Linear);
    texture->setMagnificationFilter(Qt3DRender::QAbstractTexture::Linear);
    texture->addTextureImage(m_texture);

    auto* const material = materialOf(m_surface, parts.textEffect);
    add(material, LabelTextEffect::textureParameter, QVariant::fromValue(texture));
    m_depth = add(material, LabelTextEffect::depthParameter, 0.0F);
    m_surface->addComponent(parts.surface);
    m_surface->addComponent(material);
    m_surface->addComponent(m_surfaceTransform);

    auto* const pointerMaterial = materialOf(m_pointer, parts.pointerEffect);
    add(pointerMaterial, OnTopEffect::colourParameter, pointerColour);
    m_pointer->addComponent(parts.pointer);
    m_pointer->addComponent(pointerMaterial);
    m_pointer->addComponent(m_pointerTransform);
    // Whole before it hangs in the scene: the renderer would search its list of changes with each part.
    setParent(parent);
}

void LabelFace::paint(const LabelLook& look, const QSize& pixels)
{
    m_texture->show(look, pixels);
}

void LabelFace::setDepth(float depth)
{
    m_depth->setValue(depth);
}

QSize LabelFace::texturePixels() const
{
    return m_texture->pixels();
}

void LabelFace::place(const LabelPlacement::View& view, float depth, const QVector3D& center, const QSizeF& size,
                      const QVector3D& offset, float line)
{
    const float scale = LabelPlacement::scaleAtDepth(depth);
    const QVector3D middle = view.eye + LabelPlacement::sceneVector(view, center) * scale;
    m_surfaceTransform->setScale3D(
        {static_cast<float>(size.width()) * scale, 1.0F, static_cast<float>(size.height()) * scale});
    m_surfaceTransform->setRotation(LabelPlacement::facing(view));
    m_surfaceTransform->setTranslation(middle);
    m_pointerTransform->setScale3D({line * LabelPlacement::pointerWidth * scale, 1.0F, offset.length() * scale});
    m_pointerTransform->setRotation(LabelPlacement::facingAlong(view, offset));
    m_pointerTransform->setTranslation(middle);
}

} // namespace Torvik::View3d
