#include "network/NodeMaterials.h"

#include "scene/SharedComponents.h"

#include <Qt3DRender/QEffect>
#include <Qt3DRender/QMaterial>
#include <Qt3DRender/QParameter>

#include <QHash>
#include <QVector>

#include <algorithm>

namespace Torvik::View3d::NodeMaterials {

using Qt3DRender::QMaterial;

namespace {

QHash<const QObject*, QVector<QMaterial*>>& pools()
{
    static QHash<const QObject*, QVector<QMaterial*>> pools;
    return pools;
}

QMaterial* makeStandIn(QMaterial* original)
{
    auto* const material = new QMaterial(original);
    material->setEffect(original->effect());
    const auto parameters = original->parameters();
    for (Qt3DRender::QParameter* parameter : parameters)
        material->addParameter(parameter);
    QObject::connect(original, &QMaterial::effectChanged, material, &QMaterial::setEffect);
    return material;
}

} // namespace

QMaterial* standInFor(QMaterial* original)
{
    if (!original)
        return nullptr;
    auto pool = pools().find(original);
    if (pool == pools().end()) {
        pool = pools().insert(original, {});
        QObject::connect(original, &QObject::destroyed, [](QObject* gone) { pools().remove(gone); });
    }
    // The newest first: in a growing scene it is the only one with room.
    const auto withRoom = std::find_if(pool->crbegin(), pool->crend(), [](const QMaterial* material) {
        return material->entities().size() < SharedComponents::usersPerComponent;
    });
    if (withRoom != pool->crend())
        return *withRoom;
    pool->append(makeStandIn(original));
    return pool->constLast();
}

} // namespace Torvik::View3d::NodeMaterials
