#include "scene/SharedComponents.h"

#include "scene/ReadableEffect.h"

#include <Qt3DCore/QComponent>
#include <Qt3DExtras/QCylinderMesh>
#include <Qt3DExtras/QGoochMaterial>
#include <Qt3DExtras/QSphereMesh>
#include <Qt3DRender/QParameter>

#include <algorithm>

namespace Torvik::View3d {

using Qt3DExtras::QCylinderMesh;
using Qt3DExtras::QGoochMaterial;
using Qt3DExtras::QSphereMesh;

namespace {

constexpr qreal coolShare = 0.3;
constexpr int slices = 16;
constexpr int cylinderRings = 2; // the least that the mesh generator can do
constexpr int sphereRings = 8;

/** One of `items` that can serve another entity, else what `make` gives. */
template <typename Item, typename Make>
Item* withRoom(QVector<Item*>& items, Make make)
{
    // The newest first: in a growing scene it is the only one with room.
    const auto found = std::find_if(items.crbegin(), items.crend(), [](const Item* item) {
        return item->entities().size() < SharedComponents::usersPerComponent;
    });
    if (found != items.crend())
        return *found;
    items.append(make());
    return items.constLast();
}

QGoochMaterial* makeGooch(const GoochLook& look, Qt3DCore::QNode* parent)
{
    auto* material = new QGoochMaterial(parent);
    material->setCool(look.cool);
    material->setWarm(look.warm);
    material->setAlpha(look.alpha);
    material->setBeta(look.beta);
    material->setShininess(look.shininess);
    material->setDiffuse(look.diffuse);
    material->setSpecular(look.specular);
    return material;
}

} // namespace

bool GoochLook::operator==(const GoochLook& other) const
{
    // Looks are compared as given, without tolerance: they are keys, not measurements.
    const auto same = [](float a, float b) { return !(a < b) && !(b < a); };
    return cool == other.cool && warm == other.warm && same(alpha, other.alpha) && same(beta, other.beta) &&
           same(shininess, other.shininess) && diffuse == other.diffuse && specular == other.specular;
}

SharedComponents& SharedComponents::instance()
{
    static SharedComponents components;
    return components;
}

Qt3DCore::QNode* SharedComponents::holder()
{
    if (!m_holder) {
        m_cylinders.clear();
        m_spheres.clear();
        m_materials.clear();
        m_readableEffect = nullptr;
        m_holder = new Qt3DCore::QNode;
    }
    return m_holder;
}

void SharedComponents::setHome(Qt3DCore::QNode* home)
{
    holder()->setParent(home);
}

Qt3DRender::QEffect* SharedComponents::readableEffect()
{
    Qt3DCore::QNode* const parent = holder();
    if (!m_readableEffect) {
        m_readableEffect = Readable::makeEffect(parent);
        setMetresPerPixel(m_metresPerPixel);
    }
    return m_readableEffect;
}

void SharedComponents::setMetresPerPixel(float metresPerPixel)
{
    m_metresPerPixel = metresPerPixel;
    if (!m_holder || !m_readableEffect)
        return;
    const auto parameters = m_readableEffect->parameters();
    for (Qt3DRender::QParameter* parameter : parameters) {
        if (parameter->name() == QLatin1String(Readable::metresPerPixelParameter))
            parameter->setValue(metresPerPixel);
    }
}

QCylinderMesh* SharedComponents::unitCylinder()
{
    Qt3DCore::QNode* parent = holder();
    return withRoom(m_cylinders, [parent] {
        auto* mesh = new QCylinderMesh(parent);
        mesh->setRadius(1.0F);
        mesh->setLength(1.0F);
        mesh->setRings(cylinderRings);
        mesh->setSlices(slices);
        return mesh;
    });
}

QSphereMesh* SharedComponents::unitSphere()
{
    Qt3DCore::QNode* parent = holder();
    return withRoom(m_spheres, [parent] {
        auto* mesh = new QSphereMesh(parent);
        mesh->setRadius(1.0F);
        mesh->setRings(sphereRings);
        mesh->setSlices(slices);
        return mesh;
    });
}

QGoochMaterial* SharedComponents::goochMaterial(const GoochLook& look)
{
    Qt3DCore::QNode* parent = holder();
    auto found = std::find_if(m_materials.begin(), m_materials.end(),
                              [&look](const Materials& materials) { return materials.look == look; });
    if (found == m_materials.end()) {
        m_materials.append({look, {}});
        found = m_materials.end() - 1;
    }
    Qt3DRender::QEffect* const effect = readableEffect();
    return withRoom(found->items, [parent, effect, &look] {
        QGoochMaterial* const material = makeGooch(look, parent);
        Readable::apply(material, effect, pipePixels);
        return material;
    });
}

QGoochMaterial* SharedComponents::goochMaterial(const QColor& warm)
{
    return goochMaterial(lookFromWarm(warm));
}

GoochLook SharedComponents::lookFromWarm(const QColor& warm)
{
    GoochLook look;
    look.warm = warm;
    look.cool =
        QColor::fromRgbF(warm.redF() * coolShare, warm.greenF() * coolShare, warm.blueF() * coolShare, warm.alphaF());
    return look;
}

} // namespace Torvik::View3d
