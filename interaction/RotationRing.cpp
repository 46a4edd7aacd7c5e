#include "interaction/RotationRing.h"

#include "interaction/DragMath.h"
#include "interaction/ObjectPicker.h"
#include "interaction/Utils3d.h"
#include "scene/SceneRoot.h"

#include <Qt3DCore/QTransform>
#include <Qt3DExtras/QCylinderMesh>
#include <Qt3DExtras/QPhongAlphaMaterial>
#include <Qt3DRender/QCamera>

namespace Torvik::View3d {

namespace {

constexpr float height = 0.1F;
/** Below the object's own place. */
constexpr float lowered = -0.2F;
constexpr int slices = 42;
constexpr float alpha = 0.85F;

} // namespace

RotationRing::RotationRing(Qt3DCore::QEntity* parent)
    : Qt3DCore::QEntity(parent)
    , m_mesh(new Qt3DExtras::QCylinderMesh(this))
    , m_picker(new ObjectPicker(this))
{
    auto* const place = new Qt3DCore::QTransform(this);
    place->setTranslation({0.0F, lowered, 0.0F});
    m_mesh->setLength(height);
    m_mesh->setSlices(slices);
    auto* const material = new Qt3DExtras::QPhongAlphaMaterial(this);
    material->setDiffuse(Qt::white);
    material->setSpecular(QColor(1, 1, 1));
    material->setAmbient(Qt::white);
    material->setShininess(0.0F);
    material->setAlpha(alpha);
    for (Qt3DCore::QComponent* component : std::initializer_list<Qt3DCore::QComponent*> {place, material})
        addComponent(component);
    followView();
    if (const auto* const camera = SceneRoot::camera())
        connect(camera, &Qt3DRender::QCamera::viewVectorChanged, this, &RotationRing::followView);
}

void RotationRing::setShown(bool shown)
{
    setEnabled(shown);
    m_picker->setEnabled(shown);
    if (m_shown == shown)
        return;
    m_shown = shown;
    if (shown)
        addComponent(m_mesh);
    else
        removeComponent(m_mesh);
}

float RotationRing::radius() const
{
    return m_mesh->radius();
}

void RotationRing::followView()
{
    m_mesh->setRadius(radiusInView());
}

float RotationRing::radiusInView()
{
    return DragMath::ringRadius(Utils3d::lensDistance(SceneRoot::camera()));
}

} // namespace Torvik::View3d
