#include "interaction/CoordArrows.h"

#include "labels/OnTopEffect.h"
#include "scene/Fuzzy.h"

#include <Qt3DCore/QTransform>
#include <Qt3DExtras/QGoochMaterial>
#include <Qt3DRender/QMesh>
#include <Qt3DRender/QParameter>

#include <QUrl>

namespace {

constexpr float arrowScale = 3.0F;

} // namespace

QHash<QString, CoordArrows*>& CoordArrows::arrows()
{
    static QHash<QString, CoordArrows*> byName;
    return byName;
}

CoordArrows* CoordArrows::create(Qt3DCore::QNode* parent, const QString& name)
{
    CoordArrows*& cross = arrows()[name];
    if (!cross)
        cross = new CoordArrows(parent);
    return cross;
}

CoordArrows::CoordArrows(Qt3DCore::QNode* parent)
    : Qt3DCore::QEntity(parent)
    , m_transform(new Qt3DCore::QTransform(this))
{
    addComponent(m_transform);
    createArrows();
}

CoordArrows::~CoordArrows()
{
    auto& known = arrows();
    for (const QString& name : known.keys(this))
        known.remove(name);
}

void CoordArrows::createArrows()
{
    struct Look {
        QColor colour;
        QQuaternion rotation;
    };
    const std::array<Look, 3> looks {{
        {QColor(QStringLiteral("green")), QQuaternion::fromAxisAndAngle(0.0F, 0.0F, 1.0F, -90.0F)},
        {QColor(QStringLiteral("red")), QQuaternion()},
        {QColor(QStringLiteral("blue")), QQuaternion::fromAxisAndAngle(1.0F, 0.0F, 0.0F, 90.0F)},
    }};
    for (std::size_t axis = 0; axis < looks.size(); ++axis) {
        auto* const entity = new Qt3DCore::QEntity(this);
        auto* const mesh = new Qt3DRender::QMesh(entity);
        mesh->setSource(QUrl(QStringLiteral("qrc:/models/arrow.obj")));
        auto* const material = new Qt3DExtras::QGoochMaterial(entity);
        material->setEffect(new OnTopEffect(material));
        material->addParameter(
            new Qt3DRender::QParameter(QLatin1String(OnTopEffect::colourParameter), looks[axis].colour, material));
        auto* const place = new Qt3DCore::QTransform(entity);
        place->setScale(arrowScale);
        place->setRotation(looks[axis].rotation);
        for (Qt3DCore::QComponent* component : std::initializer_list<Qt3DCore::QComponent*> {mesh, material, place})
            entity->addComponent(component);
        m_arrows[axis] = {entity, material};
    }
}

void CoordArrows::setArrowVisible(QVector3D visible)
{
    for (int axis = 0; axis < 3; ++axis) {
        const Arrow& arrow = m_arrows[static_cast<std::size_t>(axis)];
        const bool shown = arrow.entity->components().contains(arrow.material);
        const bool show = !Torvik::View3d::Fuzzy::isNull(visible[axis]);
        if (shown && !show)
            arrow.entity->removeComponent(arrow.material);
        else if (!shown && show)
            arrow.entity->addComponent(arrow.material);
    }
}

void CoordArrows::rotateTo(QVector3D direction)
{
    rotateTo(QQuaternion::rotationTo({0.0F, 1.0F, 0.0F}, direction));
}

void CoordArrows::rotateTo(const QQuaternion& rotation)
{
    m_transform->setRotation(rotation);
}

void CoordArrows::moveTo(const QVector3D& position)
{
    m_transform->setTranslation(position);
}
